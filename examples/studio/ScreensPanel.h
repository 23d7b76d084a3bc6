#pragma once

#include <QWidget>

class QAction;
class QLabel;
class QTableWidget;
class StageDocument;

namespace Kyte {
class KyColorWidget;
class KyScreen;
} // namespace Kyte

/** The screens of the stage that is edited: their names, colours and places. */
class ScreensPanel : public QWidget
{
    Q_OBJECT

public:
    explicit ScreensPanel(StageDocument *document, QWidget *parent = nullptr);

signals:
    /** -1 for none. */
    void currentScreenChanged(int screenId);

private slots:
    void onStageReplaced();
    void refresh();
    void onCurrentCellChanged();
    void onScreenColorChanged(const QColor &color);
    void onBackgroundColorChanged(const QColor &color);
    void addMultimediaScreen();
    void addTelopScreen();
    void renameScreen();
    void removeScreen();

private:
    void makeActions();
    void makeTable();
    void addScreen(int type);
    void fillRow(int row, const Kyte::KyScreen &screen);
    int currentScreenId() const;
    void select(int screenId);

    StageDocument *m_document = nullptr;
    QLabel *m_title = nullptr;
    QLabel *m_size = nullptr;
    Kyte::KyColorWidget *m_background = nullptr;
    QTableWidget *m_table = nullptr;
    QAction *m_addMultimedia = nullptr;
    QAction *m_addTelop = nullptr;
    QAction *m_rename = nullptr;
    QAction *m_remove = nullptr;
    bool m_isFilling = false;
};
