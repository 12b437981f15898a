#pragma once

#include <QVariantMap>

/// A form with two faces: it gives its settings as a map of an export setup, and takes them from one.
class ExportFieldForm {
public:
    ExportFieldForm() = default;
    virtual ~ExportFieldForm() = default;
    ExportFieldForm(const ExportFieldForm &) = delete;
    ExportFieldForm &operator=(const ExportFieldForm &) = delete;

    virtual QVariantMap settings() const = 0;
    /// What is absent, or of a wrong type, gets its first value.
    virtual void setSettings(const QVariantMap &settings) = 0;
};
