#pragma once

#include "KyEditorCommonExport.h"

#include <QMap>
#include <QMessageBox>
#include <QPointer>
#include <QSettings>

class QCheckBox;

namespace Kyte {

/**
 * A message box that the user can switch off by a check box, "Do not show this message again.".
 *
 * Once the box was closed with OK while it was ticked, exec() answers OK at once for every box with the same
 * text that has the same settings. The answers lie in the settings that the caller hands in and keeps;
 * without settings the box is always shown. The check box is this class's own, QMessageBox's (setCheckBox())
 * stays free. GUI thread only.
 *
 * In the settings, relative to their current group: "dialog/checked" is an array whose elements hold "name",
 * the message percent-encoded, and "checked".
 */
class KYEDITORCOMMON_EXPORT KyMessageBoxWithCheckBox : public QMessageBox
{
    Q_OBJECT
    Q_DISABLE_COPY(KyMessageBoxWithCheckBox)
    Q_PROPERTY(QString checkBoxText READ checkBoxText WRITE setCheckBoxText)
    Q_PROPERTY(bool checkBoxVisible READ isCheckBoxVisible WRITE setCheckBoxVisible)

public:
    explicit KyMessageBoxWithCheckBox(QWidget *parent = nullptr);
    KyMessageBoxWithCheckBox(QMessageBox::Icon icon,
                             const QString &title,
                             const QString &text,
                             QMessageBox::StandardButtons buttons = QMessageBox::NoButton,
                             QWidget *parent = nullptr,
                             Qt::WindowFlags flags = Qt::Dialog | Qt::MSWindowsFixedSizeDialogHint);

    /**
     * Runs the box, or, where the settings remember its message, returns QMessageBox::Ok at once: nothing is
     * shown then and finished() is not emitted.
     */
    int exec() override;

    /** Where answers are remembered; not owned. Null, as at the start, remembers nothing. */
    void setSettings(QSettings *settings);

    /** The message, by which the answer is remembered. The tick is read anew by exec(). */
    void setText(const QString &text);

    QString checkBoxText() const;
    void setCheckBoxText(const QString &text);
    /** Whether the check box is there whenever the box is. A hidden one keeps its tick, and exec() obeys it.
     */
    bool isCheckBoxVisible() const;
    void setCheckBoxVisible(bool visible);
    bool isChecked() const;

    /** Everything that is remembered, by message. Elements without a name are left out; the last of a name
     * wins. */
    QMap<QString, bool> readAllCheckedFromSettings();
    /** Replaces everything that is remembered and writes the file. The empty message is not written. */
    void writeCheckedToSettings(const QMap<QString, bool> &checked);
    /** What is remembered for the current message; false where nothing is. */
    bool checkedFromSettings();
    /** Remembers the current message, or forgets it, and writes the file. */
    void setCheckedToSettings(bool checked);

protected:
    void childEvent(QChildEvent *event) override;
    void showEvent(QShowEvent *event) override;

private slots:
    void onFinished(int result);

private:
    void setup();
    void placeCheckBox();
    void makeCheckBoxLastTab();

    QCheckBox *m_checkBox = nullptr;
    QPointer<QSettings> m_settings;
};

} // namespace Kyte
