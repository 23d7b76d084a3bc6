#include "StageFiles.h"

#include "KyStageLayouts_p.h"

#include <KyStage.h>
#include <KyStagePreview.h>
#include <KyStageTemplate.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>

namespace Kyte {

static QString translated(const char *sourceText)
{
    return QCoreApplication::translate("Kyte::KyStageTemplate", sourceText);
}

static StageItems templatesOfThisMachine()
{
    KyStageTemplate builder(nullptr);
    builder.start();
    StageItems items;
    const QList<KyStageListWidgetItem *> list = builder.listItemList();
    for (KyStageListWidgetItem *item : list)
        items.emplace_back(item);
    return items;
}

StageItems makeStageTemplates(const QSize &monitor)
{
    if (!monitor.isValid())
        return templatesOfThisMachine();
    StageItems items;
    for (int index = 0; index < StageLayouts::LAYOUT_COUNT; ++index) {
        const auto layout = static_cast<StageLayouts::Layout>(index);
        items.push_back(std::make_unique<KyStageListWidgetItem>());
        items.back()->setStage(
            StageLayouts::makeStage(layout, QRect(QPoint(), monitor), translated).release());
        items.back()->createIconImage();
    }
    return items;
}

StageFiles::StageFiles(const QString &folder)
    : m_folder(folder)
{
}

bool StageFiles::writeIcons(const KyStageListWidgetItem &item, int number)
{
    const QList<QSize> sizes = item.icon().availableSizes();
    for (const QSize &size : sizes) {
        const double factor = double(size.width()) / item.iconSize().width();
        const QString name =
            QStringLiteral("template-%1-%2x.png").arg(number, 2, 10, QLatin1Char('0')).arg(factor, 0, 'f', 2);
        if (!write(item.icon().pixmap(size).toImage(), name))
            return false;
    }
    return true;
}

bool StageFiles::writePreview(const KyStage &stage, const QSize &size, const QString &name)
{
    KyStagePreview preview;
    preview.resize(size);
    preview.setStage(stage);
    QImage image(size, QImage::Format_RGB32);
    if (!image.isNull())
        preview.render(&image);
    return write(image, name);
}

QString StageFiles::lastErrorMessage() const
{
    return m_lastErrorMessage;
}

QStringList StageFiles::names() const
{
    return m_names;
}

bool StageFiles::write(const QImage &image, const QString &name)
{
    QBuffer buffer;
    const QString path = QDir(m_folder).filePath(name);
    // Not QSaveFile, which waits for the disk each time: these are a hundred pictures that can be made again.
    QFile file(path);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG") || !QDir().mkpath(m_folder)
        || !file.open(QIODevice::WriteOnly) || file.write(buffer.data()) != buffer.size() || !file.flush()) {
        m_lastErrorMessage =
            QStringLiteral("The file cannot be written: %1").arg(QDir::toNativeSeparators(path));
        return false;
    }
    m_names.append(name);
    return true;
}

} // namespace Kyte
