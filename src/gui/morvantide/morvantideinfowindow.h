#pragma once

#include "gui/common/uiinfo.h"

#include <QHash>
#include <QWidget>

#include <functional>

class Datastore;
class QPushButton;
class QStandardItem;
class QStandardItemModel;
class QTreeView;

/// A small window of its own that lists the spectra in memory, one row for each description, and lets the user rename,
/// recolour and discard them. It holds no data: it reads the list from UiInfo and asks the main window to remove.
class MorvantideInfoWindow : public QWidget {
    Q_OBJECT
public:
    /// How many records have the spectrum, as a sentence.
    /// How many records of the store have the spectrum, in words. Null has none.
    static QString recordsText(const Datastore *store, UiInfo::InfoKey spectrum);
    using RecordsText = std::function<QString(UiInfo::InfoKey)>;

    explicit MorvantideInfoWindow(std::shared_ptr<UiInfo> uiInfo, QWidget *parent = nullptr);
    ~MorvantideInfoWindow() override;

    /// The text of a row's tool tip, worked out when it is shown.
    void setRecordsText(RecordsText text);

public Q_SLOTS:
    void updateModel();
    void selectionChanged();
    void deleteSpectrum();
    void changeSpectrumColor();
    void renameSpectrum();

Q_SIGNALS:
    void requestSpectrumRemove(const SpectMath::SpectrumInfo *spectrum);

private:
    class Model;

    /// In the list's order. Pointers that hold: removing one rebuilds the list.
    QList<UiInfo::InfoPointer> selectedSpectra() const;
    void addRow(const UiInfo::InfoPointer &info);

    std::shared_ptr<UiInfo> m_uiInfo;
    Model *m_model;
    QTreeView *m_treeView;
    QPushButton *m_renameButton;
    QPushButton *m_colorButton;
    QPushButton *m_deleteButton;
    bool m_updating = false; ///< the rows, and the selection with them, are being made anew
};
