#include "Tour.h"

#include "ConversionPanel.h"
#include "DestinationModel.h"
#include "DestinationsPanel.h"
#include "FirstStart.h"
#include "MainWindow.h"
#include "MediaPanel.h"
#include "StageDocument.h"
#include "TemplatesPanel.h"

#include <KyCommandLinkDialog.h>
#include <KyCommon.h>
#include <KyCommonInputNameDialog.h>
#include <KyMessageBoxWithCheckBox.h>
#include <KyScreen.h>

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QDockWidget>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QStyleFactory>
#include <QTimer>
#include <QTreeView>

using namespace Kyte;

static const int STEP_TIME = 50; // milliseconds between two looks
static const qint64 SETTLING_TIME = 250; // milliseconds that views take to paint what they have just got
static const int PATIENCE =
    90000; // milliseconds: an office program that starts for the first time takes long
static const int FONT_SIZE = 9;
static const int TEMPLATE_ROW = 5; // two multimedia screens and a telop
static const QString GROUP = QStringLiteral("Summer festival");

Tour::Tour(const QString &folder, QObject *parent)
    : QObject(parent)
    , m_folder(QDir(folder).absolutePath())
{
    m_out.setCodec("UTF-8");
}

Tour::~Tour() = default;

bool Tour::start()
{
    // The same pictures everywhere.
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    QFont font = QApplication::font();
    font.setPointSize(FONT_SIZE);
    QApplication::setFont(font);
    if (!QDir().mkpath(m_folder)) {
        m_lastErrorMessage = tr("The folder %1 cannot be made.").arg(QDir::toNativeSeparators(m_folder));
        return false;
    }
    FirstStart environment;
    if (!environment.createSample(m_environment.path())) {
        m_lastErrorMessage = environment.lastErrorMessage();
        return false;
    }
    m_window = std::make_unique<MainWindow>();
    m_window->setLayoutRemembered(false); // the user's own is left alone
    m_window->show();
    m_window->open();
    planStart();
    planStage();
    planMedia();
    planDestinations();
    planConversion();
    m_waiting.start();
    QTimer::singleShot(STEP_TIME, this, SLOT(goOn()));
    return true;
}

QString Tour::lastErrorMessage() const
{
    return m_lastErrorMessage;
}

/** One step, once it can be done. The next look is arranged first: a step may open a dialog that waits. */
void Tour::goOn()
{
    if (m_steps.isEmpty()) {
        quit(0);
        return;
    }
    QTimer::singleShot(STEP_TIME, this, SLOT(goOn()));
    if (!m_steps.first().isReady()) {
        if (!m_waiting.hasExpired(PATIENCE))
            return;
        m_out << tr("Waited in vain: %1").arg(m_steps.first().text) << "\n";
        m_steps.clear();
        quit(1);
        return;
    }
    const Step step = m_steps.takeFirst();
    m_waiting.restart();
    step.act();
}

void Tour::planStart()
{
    plan(
        tr("The first start without a configuration"),
        []() {
            return true;
        },
        [this]() {
            auto *dialog = FirstStart::createDialog(m_window.get());
            dialog->setAttribute(Qt::WA_DeleteOnClose);
            dialog->setVisible(true);
        });
    plan(
        tr("The question is shown"),
        [this]() {
            return m_window->findChild<KyCommandLinkDialog *>();
        },
        [this]() {
            auto *dialog = m_window->findChild<KyCommandLinkDialog *>();
            picture(QStringLiteral("studio-first-start"), tr("The first start asks for an environment"),
                    dialog);
            dialog->close();
        });
}

void Tour::planStage()
{
    plan(
        tr("The templates are listed"),
        [this]() {
            return find<QListWidget>("templates")->count() > TEMPLATE_ROW
                && find<QPushButton>("listTemplates")->isEnabled();
        },
        [this]() {
            find<QListWidget>("templates")->setCurrentRow(TEMPLATE_ROW);
            find<QPushButton>("useTemplate")->click();
        });
    plan(
        tr("A stage is begun"),
        [this]() {
            return m_window->findChild<StageDocument *>()->hasStage();
        },
        [this]() {
            auto *document = m_window->findChild<StageDocument *>();
            const QList<KyScreen *> screens = document->stage().screenList();
            for (int type : {KyEventType::Clicked, KyEventType::Finished}) {
                KyEvent event(KyEvent::Wait, static_cast<KyEventType::EventType>(type));
                event.setSenderScreenId(screens.at(1)->id());
                event.setAction(type == KyEventType::Clicked ? KyEventAction::TransitToNextContent
                                                             : KyEventAction::Start);
                document->addEvent(screens.at(0)->id(), event);
            }
            KyEvent event(KyEvent::Raise, KyEventType::Finished);
            document->addEvent(screens.at(0)->id(), event);
            document->removeAllEvents(screens.at(0)->id());
            document->undoStack()->undo(); // as if nothing had been removed
        });
}

void Tour::planMedia()
{
    const QString folder = mediaPath(QStringLiteral("Food"));
    plan(
        tr("The destinations are read"),
        [this]() {
            return !m_window->findChild<DestinationsPanel *>()->isReading();
        },
        [this, folder]() {
            m_window->findChild<MediaPanel *>()->openFolder(folder);
            m_window->findChild<QDockWidget *>(QStringLiteral("studio_library"))->raise();
        });
    plan(
        tr("Thumbnails of the pictures are made"),
        [folder]() {
            const int pictures = QDir(folder).entryList({QStringLiteral("*.png")}, QDir::Files).size();
            return QDir(folder + QLatin1Char('/') + THUMBNAIL_FOLDER).entryList(QDir::Files).size()
                == pictures;
        },
        []() {});
    plan(
        tr("The whole window"),
        [this]() {
            return m_waiting.hasExpired(SETTLING_TIME); // the last thumbnail is read again and shown
        },
        [this]() {
            picture(QStringLiteral("studio"),
                    tr("The whole window: stage, media, preview, events, destinations"), m_window.get());
            find<QLineEdit>("mediaFilter")->setText(QStringLiteral("so"));
        });
    plan(
        tr("The filter is applied"),
        [this]() {
            return find<QListView>("mediaFiles")->model()->rowCount() == 1;
        },
        [this]() {
            find<QLineEdit>("mediaFilter")->clear();
        });
}

void Tour::planDestinations()
{
    auto *panel = m_window->findChild<DestinationsPanel *>();
    auto *model = panel->findChild<DestinationModel *>();
    plan(
        tr("The filter is taken back"),
        [this]() {
            return find<QListView>("mediaFiles")->model()->rowCount() > 1;
        },
        [this]() {
            find<QAction>("addGroup")->trigger(); // returns when the dialog is closed
        });
    plan(
        tr("The name of a group is asked for"),
        []() {
            return qobject_cast<KyCommonInputNameDialog *>(QApplication::activeModalWidget());
        },
        [this]() {
            auto *dialog = static_cast<KyCommonInputNameDialog *>(QApplication::activeModalWidget());
            dialog->setText(GROUP);
            picture(QStringLiteral("studio-name"), tr("A name is asked for"), dialog);
            dialog->findChild<QPushButton *>(QStringLiteral("pushButton_ok"))->click();
        });
    plan(
        tr("The group is there"),
        [model]() {
            return model->categoryNames(KyDestination::Data_Group).contains(GROUP);
        },
        [this, model]() {
            const QModelIndex group = model->index(0, 0);
            QMimeData *dragged = model->mimeData({model->index(1, 0, model->index(1, 0)),
                                                  model->index(4, 0, model->index(1, 0)),
                                                  model->index(7, 0, model->index(1, 0))});
            model->dropMimeData(dragged, Qt::MoveAction, -1, -1, group);
            delete dragged;
            find<QTreeView>("destinations")->expandAll();
        });
    plan(
        tr("Destinations are in the group"),
        [model]() {
            return model->rowCount(model->index(0, 0)) == 3;
        },
        [this, panel]() {
            picture(QStringLiteral("studio-destinations"),
                    tr("Destinations by group, some moved into a new one"), panel->parentWidget());
            find<QTreeView>("destinations")
                ->setCurrentIndex(panel->findChild<DestinationModel *>()->index(0, 0));
            find<QAction>("removeGroup")->trigger(); // returns when the question is answered
        });
    plan(
        tr("Removing the group is asked about"),
        []() {
            return qobject_cast<KyMessageBoxWithCheckBox *>(QApplication::activeModalWidget());
        },
        [this, panel]() {
            auto *box = static_cast<KyMessageBoxWithCheckBox *>(QApplication::activeModalWidget());
            picture(QStringLiteral("studio-remove"), tr("A question that can be switched off"), box);
            box->reject();
            QTimer::singleShot(0, panel, SLOT(save()));
        });
    plan(
        tr("The destinations are saved"),
        [panel]() {
            return !panel->isEdited();
        },
        []() {});
}

void Tour::planConversion()
{
    auto *panel = m_window->findChild<ConversionPanel *>();
    const QString presentation = mediaPath(QStringLiteral("Presentations/Safety.odp"));
    plan(
        tr("A presentation is chosen"),
        []() {
            return true;
        },
        [this, panel, presentation]() {
            emit m_window->findChild<MediaPanel *>()->presentationChosen(presentation);
            panel->convert();
        });
    plan(
        tr("The presentation is converted"),
        [panel]() {
            return !panel->isConverting();
        },
        [this, panel]() {
            const bool isMade =
                QDir(mediaPath(QStringLiteral("Safety slides"))).exists(QStringLiteral("slide1.png"));
            picture(QStringLiteral("studio-conversion"),
                    isMade ? tr("A presentation turned into pictures")
                           : tr("A presentation could not be converted, and the panel tells why"),
                    panel->parentWidget());
        });
    plan(
        tr("The media library shows the slides"),
        [this]() {
            return m_waiting.hasExpired(4 * SETTLING_TIME); // their thumbnails are made meanwhile
        },
        [this]() {
            auto *media = m_window->findChild<MediaPanel *>();
            picture(QStringLiteral("studio-media"), tr("The media library"), media->parentWidget());
        });
}

void Tour::plan(const QString &text, const std::function<bool()> &isReady, const std::function<void()> &act)
{
    m_steps.append({text, isReady, act});
}

QString Tour::mediaPath(const QString &name) const
{
    return m_environment.filePath(QStringLiteral("data/media/") + name);
}

void Tour::picture(const QString &name, const QString &text, QWidget *widget)
{
    const QString file = QDir(m_folder).filePath(name + QStringLiteral(".png"));
    if (!widget->grab().save(file)) {
        m_out << tr("%1 cannot be written.").arg(QDir::toNativeSeparators(file)) << "\n";
        m_steps.clear();
        quit(1);
        return;
    }
    m_out << text << "\n    " << QDir::toNativeSeparators(file) << "\n";
    m_out.flush();
}

void Tour::quit(int code)
{
    m_out.flush();
    m_window = nullptr;
    QApplication::exit(code);
}

template<typename Widget>
Widget *Tour::find(const char *name) const
{
    return m_window->findChild<Widget *>(QLatin1String(name));
}
