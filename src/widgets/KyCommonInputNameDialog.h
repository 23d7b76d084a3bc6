#pragma once

#include "KyEditorCommonExport.h"

#include <QDialog>
#include <QPointer>

#include <memory>

namespace Ui {
class KyCommonInputNameDialog;
}

namespace Kyte {

class KyInputNameChecker;

/**
 * Asks for a name: of a stage, a screen, a folder.
 *
 * A checker decides what is acceptable; without one everything is. Nothing is checked before the user types
 * or presses OK, and a text set by the program is not filtered. The dialog owns the checker. GUI thread only.
 */
class KYEDITORCOMMON_EXPORT KyCommonInputNameDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(KyCommonInputNameDialog)
    Q_PROPERTY(QString title READ title WRITE setTitle)
    Q_PROPERTY(QString label READ label WRITE setLabel)
    Q_PROPERTY(QString text READ text WRITE setText)
    Q_PROPERTY(QString initialText READ initialText WRITE setInitialText)
    Q_PROPERTY(int maxTextLength READ maxTextLength WRITE setMaxTextLength)
    Q_PROPERTY(bool renameMode READ renameMode WRITE setRenameMode)

public:
    explicit KyCommonInputNameDialog(QWidget *parent = nullptr);
    /** \a initialText is what the line edit shows, and what counts as unchanged in rename mode. */
    KyCommonInputNameDialog(QWidget *parent,
                            const QString &title,
                            const QString &label,
                            const QString &initialText,
                            KyInputNameChecker *checker,
                            bool renameMode);
    ~KyCommonInputNameDialog() override;

    /** The title of the window. */
    QString title() const;
    void setTitle(const QString &title);
    /** What stands above the line edit. */
    QString label() const;
    void setLabel(const QString &label);
    /** What stands in the line edit. */
    QString text() const;
    void setText(const QString &text);
    /** The text that rename mode accepts unasked. Setting it leaves the line edit alone. */
    QString initialText() const;
    void setInitialText(const QString &text);
    /** The checker is taken over, its validator put on the line edit, and the former checker deleted. */
    KyInputNameChecker *inputChecker() const;
    void setInputChecker(KyInputNameChecker *checker);
    /** How many characters the line edit takes; 256 until set. A longer text in it is cut. */
    int maxTextLength() const;
    void setMaxTextLength(int length);
    /** Renaming to the same name is no error: in rename mode OK accepts the initial text without asking. */
    bool renameMode() const;
    void setRenameMode(bool enabled);

protected slots:
    void onTextEdited(const QString &text);
    void onAcceptButtonClicked();
    void onRejectButtonClicked();

private:
    void setup();
    void showWarning(const QString &warning);

    QPointer<KyInputNameChecker> m_inputChecker; // owned
    int m_maxTextLength = 256;
    std::unique_ptr<Ui::KyCommonInputNameDialog> m_form;
    bool m_renameMode = false;
    QString m_initialText;
};

} // namespace Kyte
