#pragma once

#include "datafiles/reading/folderoverview.h"
#include "util/slicedwork.h"

#include <QLabel>
#include <QTimer>
#include <QVariantMap>

#include <optional>

/// Tells what the names and headers of the files of a choice hold: days, files, bytes, modes and variables. Looks at
/// them between the turns of the event loop, a moment after the last change of the choice.
class OverviewLabel : public QLabel {
    Q_OBJECT
public:
    explicit OverviewLabel(QWidget *parent = nullptr);
    ~OverviewLabel() override;

    /// A choice as findDataFiles() takes it.
    void setChoice(const QVariantMap &choice);

private:
    void begin();
    bool lookAtNext();
    void tell();

    QVariantMap m_choice;
    QTimer m_delay; ///< a name is typed letter by letter
    QStringList m_files;
    int m_next = 0;
    std::optional<FolderSurvey> m_survey;
    SlicedWork m_work;
};
