#pragma once

#include <QWidget>

struct ExportSample;
class QLabel;
class QTableWidget;

/// Shows the beginning of a table, the names of its files, and what is wrong with its setup.
class ExportPreview : public QWidget {
    Q_OBJECT
public:
    explicit ExportPreview(QWidget *parent = nullptr);

    void showSample(const ExportSample &sample);

private:
    void showRows(const ExportSample &sample);

    QTableWidget *m_table;
    QLabel *m_files;
    QLabel *m_errors;
};
