#pragma once

#include "KyEditorCommonExport.h"

#include <QCommandLinkButton>

namespace Kyte {

/**
 * A command-link button that knows its number.
 *
 * One slot can so serve many buttons. What a screen reader tells besides the text is the description, as it
 * is when the button is shown, unless the application has set an accessible description of its own. GUI
 * thread only.
 */
class KYEDITORCOMMON_EXPORT KyCommandLinkButton : public QCommandLinkButton
{
    Q_OBJECT
    Q_DISABLE_COPY(KyCommandLinkButton)
    Q_PROPERTY(int buttonId READ buttonId WRITE setButtonId)

public:
    explicit KyCommandLinkButton(QWidget *parent = nullptr);
    explicit KyCommandLinkButton(const QString &text, QWidget *parent = nullptr);
    KyCommandLinkButton(const QString &text, const QString &description, QWidget *parent = nullptr);
    KyCommandLinkButton(const QString &text,
                        const QString &description,
                        int buttonId,
                        QWidget *parent = nullptr);

    /** The number; 0 until one is set. */
    int buttonId() const;
    void setButtonId(int buttonId);

signals:
    /**
     * Both follow QAbstractButton's clicked(bool), this one first. Connect one of the two: who connects both
     * hears of every click twice.
     */
    void clicked(KyCommandLinkButton *button); // clazy:exclude=overloaded-signal
    void clicked(int buttonId); // clazy:exclude=overloaded-signal

protected:
    void showEvent(QShowEvent *event) override;

private slots:
    void onClicked(bool checked);

private:
    void setup();

    int m_buttonId = 0;
};

} // namespace Kyte
