#include "ConversionPanel.h"

#include "EmptyHint.h"
#include "MessageBar.h"

#include <KyExtension.h>
#include <KyPptConversion.h>
#include <Path.h>

#include <QComboBox>
#include <QDir>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>

using namespace Kyte;

static const QSize SLIDE_SIZES[] = {QSize(1280, 720), QSize(1920, 1080), QSize(1024, 768)};

/** The presentation among what is dragged; empty when there is not exactly one. */
static QString draggedPresentation(const QMimeData *data)
{
    const QList<QUrl> urls = data->urls();
    const QString path = urls.size() == 1 ? urls.first().toLocalFile() : QString();
    const bool isPresentation =
        KyExtension::getMediaType(Path::getExtension(path)) == MediaType::Presentation;
    return isPresentation ? path : QString();
}

ConversionPanel::ConversionPanel(QWidget *parent)
    : QWidget(parent)
    , m_messages(new MessageBar(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(makeChoice());
    layout->addWidget(m_messages);
    layout->addWidget(makeProgress(), 1);
    setAcceptDrops(true);
    connect(m_presentation, SIGNAL(textChanged(QString)), this, SLOT(refresh()));
    connect(m_browse, SIGNAL(clicked()), this, SLOT(browse()));
    connect(m_convert, SIGNAL(clicked()), this, SLOT(convert()));
    connect(m_abort, SIGNAL(clicked()), this, SLOT(abort()));
    refresh();
}

QWidget *ConversionPanel::makeChoice()
{
    auto *choice = new QWidget(this);
    m_presentation = new QLineEdit(choice);
    m_browse = new QPushButton(tr("&Browse…"), choice);
    m_size = new QComboBox(choice);
    m_target = new QLabel(choice);
    m_presentation->setObjectName(QStringLiteral("presentation"));
    m_presentation->setPlaceholderText(tr("Choose a presentation, or drop one here"));
    m_target->setTextFormat(Qt::PlainText);
    m_target->setForegroundRole(QPalette::Dark);
    for (const QSize &size : SLIDE_SIZES)
        m_size->addItem(tr("%1 × %2").arg(size.width()).arg(size.height()), size);

    auto *file = new QHBoxLayout;
    file->addWidget(m_presentation, 1);
    file->addWidget(m_browse);
    auto *slides = new QHBoxLayout;
    slides->addWidget(m_size);
    slides->addSpacing(8);
    slides->addWidget(m_target, 1);
    auto *layout = new QFormLayout(choice);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addRow(tr("Presentation:"), file);
    layout->addRow(tr("Slides:"), slides);
    return choice;
}

QWidget *ConversionPanel::makeProgress()
{
    auto *progress = new QWidget(this);
    m_progress = new QProgressBar(progress);
    m_convert = new QPushButton(tr("&Convert"), progress);
    m_abort = new QPushButton(tr("&Abort"), progress);
    m_log = new QListWidget(progress);
    m_progress->setObjectName(QStringLiteral("conversionProgress"));
    m_convert->setObjectName(QStringLiteral("convert"));
    m_abort->setObjectName(QStringLiteral("abortConversion"));
    m_log->setObjectName(QStringLiteral("conversionLog"));
    m_log->setSelectionMode(QAbstractItemView::NoSelection);
    new EmptyHint(tr("What the converter tells appears here."), m_log);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_progress, 1);
    buttons->addWidget(m_convert);
    buttons->addWidget(m_abort);
    auto *layout = new QVBoxLayout(progress);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(buttons);
    layout->addWidget(m_log, 1);
    return progress;
}

void ConversionPanel::setOutputRoot(const QString &path)
{
    m_outputRoot = path;
    refresh();
}

bool ConversionPanel::isConverting() const
{
    return m_conversion;
}

void ConversionPanel::setPresentation(const QString &path)
{
    if (!m_conversion)
        m_presentation->setText(shown(path));
}

void ConversionPanel::convert()
{
    if (m_conversion)
        return;
    m_messages->clear();
    m_log->clear();
    m_progress->setValue(0);
    m_folder = outputFolder();
    m_conversion = new KyPptConversion(presentation(), m_folder, false, this);
    const QSize size = m_size->currentData().toSize();
    m_conversion->setWidth(size.width());
    m_conversion->setHeight(size.height());
    connect(m_conversion, SIGNAL(informationUpdated(QString)), this, SLOT(onInformationUpdated(QString)));
    connect(m_conversion, SIGNAL(progressUpdated(int)), this, SLOT(onProgressUpdated(int)));
    // Comes when everything is made, also where the last message of the converter came too late to be told.
    connect(m_conversion, SIGNAL(creationCompleted(QString)), this, SLOT(onCreationCompleted()));
    connect(m_conversion, SIGNAL(errorOccured(QString, bool)), this, SLOT(onErrorOccured(QString)));
    connect(m_conversion, SIGNAL(aborted()), this, SLOT(onAborted()));
    refresh();
    m_conversion->startAsync();
}

void ConversionPanel::abort()
{
    if (!m_conversion)
        return;
    m_abort->setEnabled(false);
    m_conversion->abort();
}

void ConversionPanel::dragEnterEvent(QDragEnterEvent *event)
{
    if (!m_conversion && !draggedPresentation(event->mimeData()).isEmpty()) {
        event->setDropAction(Qt::CopyAction); // the file stays where it is
        event->accept();
    }
}

void ConversionPanel::dropEvent(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
    setPresentation(draggedPresentation(event->mimeData()));
}

void ConversionPanel::browse()
{
    const QString file =
        QFileDialog::getOpenFileName(this, tr("Choose a presentation"), m_outputRoot,
                                     tr("Presentations (*.odp *.ppt *.pptx *.pps *.ppsx);;All files (*)"));
    if (!file.isEmpty())
        setPresentation(file);
}

void ConversionPanel::refresh()
{
    const bool isChosen = !m_presentation->text().isEmpty();
    m_presentation->setReadOnly(m_conversion);
    m_browse->setEnabled(!m_conversion);
    m_size->setEnabled(!m_conversion);
    m_convert->setEnabled(!m_conversion && isChosen && !m_outputRoot.isEmpty());
    m_abort->setEnabled(m_conversion);
    m_target->setText(isChosen ? tr("to %1").arg(shown(outputFolder())) : QString());
    m_target->setToolTip(isChosen ? QDir::toNativeSeparators(outputFolder()) : QString());
}

void ConversionPanel::onInformationUpdated(const QString &information)
{
    m_log->addItem(information);
    m_log->scrollToBottom();
}

void ConversionPanel::onProgressUpdated(int percent)
{
    m_progress->setValue(percent);
}

void ConversionPanel::onCreationCompleted()
{
    if (!m_conversion)
        return; // told a second time
    m_progress->setValue(m_progress->maximum());
    m_messages->showSuccess(tr("The slides are in %1.").arg(shown(m_folder)));
    emit slidesMade(m_folder);
    end();
}

void ConversionPanel::onErrorOccured(const QString &message)
{
    if (!m_conversion)
        return;
    m_messages->showError(message);
    m_conversion->disconnect(this); // an abort is what ends a conversion that failed
    m_conversion->abort();
    end();
}

void ConversionPanel::onAborted()
{
    if (!m_conversion)
        return;
    m_messages->showWarning(tr("The conversion was aborted."));
    end();
}

void ConversionPanel::end()
{
    m_conversion->deleteLater();
    m_conversion = nullptr;
    refresh();
    emit ended();
}

QString ConversionPanel::presentation() const
{
    const QDir base(QFileInfo(m_outputRoot).path());
    return QDir::cleanPath(
        base.absoluteFilePath(QDir::fromNativeSeparators(m_presentation->text().trimmed())));
}

QString ConversionPanel::outputFolder() const
{
    return QDir(m_outputRoot).filePath(tr("%1 slides").arg(QFileInfo(presentation()).completeBaseName()));
}

/** A path in the media library without what comes before that. */
QString ConversionPanel::shown(const QString &path) const
{
    const bool isInside = path.startsWith(m_outputRoot + QLatin1Char('/'));
    return QDir::toNativeSeparators(isInside ? QDir(QFileInfo(m_outputRoot).path()).relativeFilePath(path)
                                             : path);
}
