#include "KyReadOnlyLineEdit.h"

#include <QScrollArea>

namespace Kyte {

static const int MAXIMUM_WIDTH = 16777215; // as wide as any widget may be
static const int MAXIMUM_HEIGHT = 20;
static const QString STYLE_SHEET = QStringLiteral("background-color:%1; border:none;");

KyReadOnlyLineEdit::KyReadOnlyLineEdit(QWidget *parent)
    : QLineEdit(parent)
{
    commonConstractor();
}

KyReadOnlyLineEdit::KyReadOnlyLineEdit(const QString &text, QWidget *parent)
    : QLineEdit(text, parent)
{
    commonConstractor();
}

void KyReadOnlyLineEdit::commonConstractor()
{
    setMaximumWidth(MAXIMUM_WIDTH);
    setMaximumHeight(MAXIMUM_HEIGHT);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setReadOnly(true);
    // The panels that these lie on are scroll areas; one that was just made has nobody's style or palette but
    // the application's.
    const QScrollArea panel;
    setStyleSheet(STYLE_SHEET.arg(panel.palette().color(QPalette::Window).name()));
}

} // namespace Kyte
