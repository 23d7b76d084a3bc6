#pragma once

#include <QWidget>

class QLabel;

namespace Kyte {
class KyStage;
class KyStagePreview;
} // namespace Kyte

/** The picture of a stage, in the stage's proportions, with a line below that says what it is. */
class PreviewPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PreviewPanel(QWidget *parent = nullptr);

    void showStage(const Kyte::KyStage &stage, const QString &caption);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void place();

    QWidget *m_frame = nullptr;
    Kyte::KyStagePreview *m_preview = nullptr;
    QLabel *m_caption = nullptr;
    QSize m_stageSize;
};
