#pragma once

#include "KyEditorCommonExport.h"

#include <QDialog>
#include <QList>
#include <QPoint>

class QAbstractButton;
class QLabel;
class QVBoxLayout;

namespace Kyte {

class KyCommandLinkButton;

/**
 * Asks the user to choose one of a few commands, each a large button with a title and a description.
 *
 * Most callers need only the static show(). Who makes a dialog adds the buttons and runs exec(), whose result
 * is the number of the chosen button, counted from 1, or 0. The dialog owns its buttons. It grows with its
 * contents while it is shown. GUI thread only.
 */
class KYEDITORCOMMON_EXPORT KyCommandLinkDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(KyCommandLinkDialog)
    Q_PROPERTY(QString mainMessage READ mainMessage WRITE setMainMessage)
    Q_PROPERTY(QString subMessage READ subMessage WRITE setSubMessage)

public:
    explicit KyCommandLinkDialog(QWidget *parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());

    /** Appends a button and returns its number: 1 for the first. */
    int addButton(const QString &text, const QString &description);

    QString mainMessage() const;
    void setMainMessage(const QString &message);
    QString subMessage() const;
    void setSubMessage(const QString &message);

    /** Gives the focus to the button with the number; nothing happens where there is none. */
    void setActiveButton(int buttonId);

    /**
     * Shows a modal dialog with a button for each text that is not empty, the first in focus, and returns the
     * number of the chosen one, or 0. Only the buttons that exist are counted. This hides QWidget::show(): a
     * dialog of one's own is shown by exec(), open() or setVisible().
     */
    static int show(QWidget *parent,
                    const QString &title,
                    const QString &mainMessage,
                    const QString &subMessage,
                    const QString &text1,
                    const QString &description1,
                    const QString &text2 = QString(),
                    const QString &description2 = QString(),
                    const QString &text3 = QString(),
                    const QString &description3 = QString(),
                    const QString &text4 = QString(),
                    const QString &description4 = QString(),
                    const QString &text5 = QString(),
                    const QString &description5 = QString());

    void setVisible(bool visible) override;

signals:
    /** A command was chosen. The dialog is still open; finished() follows. */
    void commandButtonClicked(int buttonId);
    /**
     * Cancel was clicked; finished() follows. This is not QDialog's signal of the same name, which the escape
     * key and closing the window emit as well: those emit nothing here.
     */
    void rejected(); // clazy:exclude=overridden-signal

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private slots:
    void onCommandButtonClicked(KyCommandLinkButton *button);
    void onCommandButtonClicked(int buttonId);
    void onButtonBoxClicked(QAbstractButton *button);
    void nudge();
    void nudgeBack();

private:
    void setup();
    QWidget *createMessagePanel();
    QWidget *createButtonPanel();
    void describe();
    void growToContents();

    QLabel *m_mainMessageLabel = nullptr;
    QLabel *m_subMessageLabel = nullptr;
    QVBoxLayout *m_commandButtonLayout = nullptr;
    QList<KyCommandLinkButton *> m_commandButtons;
    QWidget *m_cancelButton = nullptr;
    QPoint m_origin; // where the dialog is while it is nudged
    bool m_isNudged = false;
};

} // namespace Kyte
