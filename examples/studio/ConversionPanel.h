#pragma once

#include <QWidget>

class MessageBar;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;

namespace Kyte {
class KyPptConversion;
} // namespace Kyte

/** Turns a presentation into a folder of pictures in the media library. Presentations may be dropped on it.
 */
class ConversionPanel : public QWidget
{
    Q_OBJECT

public:
    explicit ConversionPanel(QWidget *parent = nullptr);

    /** The folder in which each presentation gets one of its own. Paths are shown beginning with its name. */
    void setOutputRoot(const QString &path);
    bool isConverting() const;

public slots:
    void setPresentation(const QString &path);
    void convert();
    void abort();

signals:
    void slidesMade(const QString &folder);
    /** The conversion is over, whatever came of it. */
    void ended();

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private slots:
    void browse();
    void refresh();
    void onInformationUpdated(const QString &information);
    void onProgressUpdated(int percent);
    void onCreationCompleted();
    void onErrorOccured(const QString &message);
    void onAborted();

private:
    QWidget *makeChoice();
    QWidget *makeProgress();
    void end();
    QString presentation() const;
    QString outputFolder() const;
    QString shown(const QString &path) const;

    QString m_outputRoot;
    QString m_folder; // of the conversion that runs
    Kyte::KyPptConversion *m_conversion = nullptr; // owned, null unless one runs
    MessageBar *m_messages = nullptr;
    QLineEdit *m_presentation = nullptr;
    QComboBox *m_size = nullptr;
    QLabel *m_target = nullptr;
    QPushButton *m_browse = nullptr;
    QPushButton *m_convert = nullptr;
    QPushButton *m_abort = nullptr;
    QProgressBar *m_progress = nullptr;
    QListWidget *m_log = nullptr;
};
