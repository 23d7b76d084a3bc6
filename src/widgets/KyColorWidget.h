#pragma once

#include "KyEditorCommonExport.h"

#include <QColor>
#include <QImage>
#include <QWidget>

namespace Kyte {

/**
 * A swatch that shows a colour and lets the user choose another one in the standard colour dialog.
 *
 * A left click opens the dialog, and so does the space bar or the return key. The mouse and the keyboard's
 * focus frame the swatch. A translucent colour is shown over a checkerboard. Colours set by the program are
 * announced just as chosen ones are. Do not delete the widget while its dialog is open. It starts with an
 * invalid colour, drawn as black, and without the alpha channel. GUI thread only.
 */
class KYEDITORCOMMON_EXPORT KyColorWidget : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(KyColorWidget)
    Q_PROPERTY(QColor backColor READ backColor WRITE setBackColor)
    Q_PROPERTY(bool alphaSettingEnabled READ alphaSettingEnabled WRITE setAlphaSettingEnabled)

public:
    explicit KyColorWidget(QWidget *parent = nullptr);

    /** The shown colour. Setting another one emits colorChanged(); setting the same one does nothing. */
    QColor backColor() const;
    void setBackColor(QColor color);

    /** Whether the colour dialog offers the alpha channel. */
    bool alphaSettingEnabled() const;
    void setAlphaSettingEnabled(bool enabled);

    QSize sizeHint() const override;

signals:
    /** The new colour comes first. backColor() is the new one already. */
    void colorChanged(QColor newColor, QColor oldColor);

protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

private:
    void showColorPicker();
    QBrush swatchBrush() const;

    QColor m_backColor;
    bool m_hovered = false;
    bool m_alphaSettingEnabled = false;
    QImage m_backgroundImage;
    bool m_focusedByKey = false;
};

} // namespace Kyte
