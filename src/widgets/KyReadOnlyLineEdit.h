#pragma once

#include "KyEditorCommonExport.h"

#include <QLineEdit>

namespace Kyte {

/**
 * A line edit that reads like a label on a panel, while its text can be selected and copied.
 *
 * It has no frame and the background of a panel, taken from the application's palette when the widget is
 * made; an application that changes its palette later makes new ones. A text that is too long scrolls. GUI
 * thread only.
 */
class KYEDITORCOMMON_EXPORT KyReadOnlyLineEdit : public QLineEdit
{
    Q_OBJECT
    Q_DISABLE_COPY(KyReadOnlyLineEdit)

public:
    explicit KyReadOnlyLineEdit(QWidget *parent = nullptr);
    explicit KyReadOnlyLineEdit(const QString &text, QWidget *parent = nullptr);

private:
    void commonConstractor();
};

} // namespace Kyte
