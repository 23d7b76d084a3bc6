#pragma once

#include <KyCoreExport.h>

#include <QColor>
#include <QList>
#include <QObject>
#include <QRect>
#include <QString>

namespace Kyte {

class KyScreen;

/**
 * A stage: a named canvas of screens. It owns the screens in its list and deletes them with itself. Although
 * a QObject, it is copied by value: a copy holds copies of the screens and neither takes the parent nor the
 * connections along. As with every QObject, the thread that the stage lives in uses it.
 */
class KYCORE_EXPORT KyStage : public QObject
{
    Q_OBJECT

public:
    explicit KyStage(QObject *parent = nullptr);
    /** A copy without a parent. */
    KyStage(const KyStage &other);
    ~KyStage() override;
    /** Keeps the parent. The list stays where it is, see screenListPtr(); the former screens are deleted. */
    KyStage &operator=(const KyStage &other);

    QString name() const;
    void setName(const QString &name);

    /** May be HTML. */
    QString description() const;
    void setDescription(const QString &description);

    /** The stage file, empty for a stage that was never saved. */
    QString filePath() const;
    void setFilePath(const QString &filePath);

    /** Black until set. */
    QColor backgroundColor() const;
    void setBackgroundColor(const QColor &color);

    /** A path relative to the stage's data folder, see Path::getDataFolderByStageFile(); empty for none. */
    QString backgroundImage() const;
    void setBackgroundImage(const QString &path);

    /** In pixels. */
    QRect rect() const;
    void setRect(const QRect &rect);

    /**
     * The option flags: bit 1 makes the stage take the desktop's size and is set at first, bit 2 adjusts the
     * screens' positions and sizes to it. Other bits are kept as they are.
     */
    unsigned int options() const;
    void setOptions(unsigned int options);
    /** Whether every bit of \a option is set; false for 0. */
    bool hasOption(unsigned int option) const;
    /** Sets or clears the bits of \a option and leaves the others alone. */
    void setOption(unsigned int option, bool on);

    /** The screens in drawing order, which stay the stage's own. */
    QList<KyScreen *> screenList() const;
    /** The stage's own list, never null, to be changed in place: a screen put in belongs to the stage. */
    QList<KyScreen *> *screenListPtr();

private:
    QString m_name;
    QString m_description;
    QString m_filePath;
    QColor m_backgroundColor = Qt::black;
    QString m_backgroundImage;
    QRect m_rect;
    unsigned int m_options = 1;
    QList<KyScreen *> m_screenList; // owned
};

} // namespace Kyte
