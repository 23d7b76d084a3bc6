#include "SampleMedia.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>

static const char *const PICTURES[] = {
    "Boards/Welcome.png",
    "Boards/Lost property.png",
    "Boards/Mind the step.png",
    "Boards/Quiet zone.png",
    "Food/Bakery.png",
    "Food/Café in the garden.png",
    "Food/Ice cream.png",
    "Food/Soup of the day.png",
    "Journeys/To the sea.png",
    "Journeys/Night train.png",
    "Journeys/Over the pass.png",
};
static const QSize PICTURE_SIZE(960, 540);
static const QString PRESENTATION = QStringLiteral(":/studio/sample/Safety.odp");

static void paintBackground(QPainter *painter, const QRect &area, int number)
{
    const int hue = number * 47 % 360;
    QLinearGradient sky(area.topLeft(), area.bottomLeft());
    sky.setColorAt(0, QColor::fromHsv(hue, 130, 150));
    sky.setColorAt(1, QColor::fromHsv((hue + 30) % 360, 70, 250));
    painter->fillRect(area, sky);
    painter->setBrush(QColor(255, 255, 255, 70));
    const int sun = area.height() / 3;
    painter->drawEllipse(QPoint(area.width() * (2 + number % 5) / 8, sun), sun / 2, sun / 2);
    for (int hill = 0; hill < 3; ++hill) {
        painter->setBrush(QColor::fromHsv((hue + 60 + hill * 12) % 360, 120, 130 - hill * 30));
        const int width = area.width() * 3 / 4;
        const int left = (hill * 310 + number * 190) % area.width() - width / 2;
        painter->drawEllipse(QRect(left, area.height() * (6 + hill) / 10, width, area.height()));
    }
}

static QImage poster(const QString &title, int number)
{
    QImage picture(PICTURE_SIZE, QImage::Format_RGB32);
    const QRect area = picture.rect();
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    paintBackground(&painter, area, number);
    QFont font = painter.font();
    font.setPixelSize(area.height() / 6);
    font.setBold(true);
    painter.setFont(font);
    const QRect place = area.adjusted(40, 0, -40, 0);
    painter.setPen(QColor(0, 0, 0, 110));
    painter.drawText(place.translated(3, 4), Qt::AlignCenter | Qt::TextWordWrap, title);
    painter.setPen(Qt::white);
    painter.drawText(place, Qt::AlignCenter | Qt::TextWordWrap, title);
    return picture;
}

SampleMedia::SampleMedia(const QString &folder)
    : m_folder(folder)
{
}

bool SampleMedia::create()
{
    int number = 0;
    for (const char *picture : PICTURES) {
        if (!writePicture(QString::fromUtf8(picture), ++number))
            return false;
    }
    return writeText(QStringLiteral("Boards/Opening hours.txt"), "Daily from 5 a.m. to 1 a.m.\n")
        && writePresentation(QStringLiteral("Presentations/Safety.odp"));
}

QString SampleMedia::lastErrorMessage() const
{
    return m_lastErrorMessage;
}

bool SampleMedia::writePicture(const QString &name, int number)
{
    const QString file = QDir(m_folder).filePath(name);
    return makeFolderOf(file)
        && (poster(QFileInfo(file).completeBaseName(), number).save(file) || fail(file));
}

bool SampleMedia::writeText(const QString &name, const QByteArray &text)
{
    QFile file(QDir(m_folder).filePath(name));
    return makeFolderOf(file.fileName())
        && ((file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush())
            || fail(file.fileName()));
}

bool SampleMedia::writePresentation(const QString &name)
{
    const QString file = QDir(m_folder).filePath(name);
    if (!makeFolderOf(file) || !(QFile::copy(PRESENTATION, file) || fail(file)))
        return false;
    // What is copied out of a program is as read-only as the program.
    return QFile::setPermissions(file, QFile::permissions(file) | QFile::WriteOwner | QFile::WriteUser)
        || fail(file);
}

bool SampleMedia::makeFolderOf(const QString &file)
{
    return QDir().mkpath(QFileInfo(file).path()) || fail(QFileInfo(file).path());
}

bool SampleMedia::fail(const QString &file)
{
    m_lastErrorMessage = QCoreApplication::translate("SampleMedia", "%1 cannot be written.")
                             .arg(QDir::toNativeSeparators(file));
    return false;
}
