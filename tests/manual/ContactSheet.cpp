#include "ContactSheet.h"

#include "Exhibits.h"

#include <QApplication>
#include <QEventLoop>
#include <QPainter>
#include <QTimer>
#include <QWidget>

#include <memory>

static const int MARGIN = 16;
static const int CAPTION_HEIGHT = 20;
static const int COLUMN_WIDTH = 420;
static const int COLUMN_HEIGHT = 1080;
static const int COLUMN_COUNT = 3;
static const int SETTLING_TIME = 60; // milliseconds

static QPixmap picture(const Exhibit &exhibit)
{
    const std::unique_ptr<QWidget> window(exhibit.make());
    window->setVisible(true);
    QEventLoop settling;
    QTimer::singleShot(SETTLING_TIME, &settling, SLOT(quit()));
    settling.exec();
    return window->grab();
}

QImage contactSheet()
{
    const qreal ratio = qApp->devicePixelRatio();
    const QSize size(COLUMN_COUNT * COLUMN_WIDTH, COLUMN_HEIGHT);
    QImage sheet(size * ratio, QImage::Format_RGB32);
    sheet.setDevicePixelRatio(ratio);
    sheet.fill(QColor(0x70, 0x80, 0x90)); // of neither palette, so that every edge shows
    QPainter painter(&sheet);
    painter.setPen(Qt::white);
    QPoint place(MARGIN, MARGIN);
    const QList<Exhibit> all = exhibits();
    for (const Exhibit &exhibit : all) {
        const QPixmap window = picture(exhibit);
        const QSize needed = window.size() / window.devicePixelRatio() + QSize(0, CAPTION_HEIGHT);
        if (place.y() + needed.height() + MARGIN > size.height())
            place = QPoint(place.x() + COLUMN_WIDTH, MARGIN);
        painter.drawText(QRect(place, QSize(COLUMN_WIDTH, CAPTION_HEIGHT)), Qt::AlignLeft | Qt::AlignVCenter,
                         exhibit.name);
        painter.drawPixmap(place + QPoint(0, CAPTION_HEIGHT), window);
        place.ry() += needed.height() + MARGIN;
    }
    return sheet;
}
