#include "SampleLibrary.h"

#include <KyThumbnail.h>

#include <QDir>
#include <QFileInfo>
#include <QPainter>

using Kyte::KyThumbnail;

static const QString FIRST_FOLDER = QStringLiteral("Menus");

/** A coloured poster that says \a title. */
static QPixmap poster(const QString &title, int hue)
{
    QPixmap picture(512, 384);
    const QRect area = picture.rect();
    QLinearGradient background(area.topLeft(), area.bottomRight());
    background.setColorAt(0, QColor::fromHsv(hue, 90, 250));
    background.setColorAt(1, QColor::fromHsv((hue + 40) % 360, 200, 160));
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(area, background);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 60));
    painter.drawEllipse(QPoint(380, 90), 150, 150);
    painter.drawEllipse(QPoint(110, 330), 110, 110);
    painter.setPen(Qt::white);
    QFont font = painter.font();
    font.setPixelSize(64);
    font.setBold(true);
    painter.setFont(font);
    painter.drawText(area, Qt::AlignCenter | Qt::TextWordWrap, title);
    return picture;
}

SampleLibrary::SampleLibrary()
{
    const QStringList menus{QStringLiteral("Breakfast"), QStringLiteral("Desserts"), QStringLiteral("Dinner"),
                            QStringLiteral("Drinks"),    QStringLiteral("Lunch"),    QStringLiteral("Soups")};
    for (int i = 0; i < menus.size(); ++i)
        addPicture(QStringLiteral("%1/%2.png").arg(FIRST_FOLDER, menus.at(i)), i * 55);
    addPicture(QStringLiteral("Promotions/Summer sale.png"), 20);
    addPicture(QStringLiteral("Promotions/Winter sale.png"), 200);
    addPicture(QStringLiteral("Promotions/Archive/Opening.png"), 120);
    addFile(QStringLiteral("Music/Jazz.mp3"), 3400000);
    addFile(QStringLiteral("Price list.txt"), 2100);
}

QString SampleLibrary::path() const
{
    return m_folder.path();
}

QString SampleLibrary::firstFolder() const
{
    return m_folder.filePath(FIRST_FOLDER);
}

void SampleLibrary::addPicture(const QString &name, int hue) const
{
    addFile(name, 0);
    const QString file = m_folder.filePath(name);
    const QPixmap picture = poster(QFileInfo(file).completeBaseName(), hue);
    picture.save(file);
    KyThumbnail thumbnail(file, nullptr, false);
    thumbnail.setPixmap(picture.scaledToWidth(256, Qt::SmoothTransformation));
    thumbnail.write(true);
}

void SampleLibrary::addFile(const QString &name, int size) const
{
    QFile file(m_folder.filePath(name));
    QDir().mkpath(QFileInfo(file).path());
    if (!file.open(QIODevice::WriteOnly) || !file.resize(size))
        qWarning("Cannot write %s", qPrintable(file.fileName()));
}
