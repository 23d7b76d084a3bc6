#pragma once

#include <KyEditorCommonExport.h>

#include <QCoreApplication>
#include <QIcon>
#include <QListWidgetItem>
#include <QSize>
#include <QString>

class QListWidget;

namespace Kyte {

class KyStage;

/**
 * A stage in a QListWidget: its name is the text, a schematic drawing of the stage and its screens the icon.
 * The item owns the stage; a copy of the item owns a copy of it.
 *
 * Without a list widget an item may be made, and its icon drawn, on any thread, as long as the platform
 * allows pixmaps there; Windows and X11 do.
 */
class KYEDITORCOMMON_EXPORT KyStageListWidgetItem : public QListWidgetItem
{
    Q_DECLARE_TR_FUNCTIONS(Kyte::KyStageListWidgetItem)

public:
    /** The item type of stages. Qt gives a copied item type 0, a copy of a stage item included. */
    static constexpr int Default_Type = 1929;

    explicit KyStageListWidgetItem(QListWidget *listView = nullptr, int type = Default_Type);
    KyStageListWidgetItem(const QString &text, QListWidget *listView, int type);
    KyStageListWidgetItem(const QIcon &icon, const QString &text, QListWidget *listView, int type);
    /** Keeps a copy of \a stage, whose name is the text. */
    KyStageListWidgetItem(const KyStage &stage, QListWidget *listView, int type);
    /** Copies what a list item has; there is no stage, whatever \a other is. */
    explicit KyStageListWidgetItem(const QListWidgetItem &other);
    KyStageListWidgetItem(const KyStageListWidgetItem &other);
    ~KyStageListWidgetItem() override;
    /** Deletes the stage that the item had. */
    KyStageListWidgetItem &operator=(const KyStageListWidgetItem &other);

    /** The item's own stage, null until there is one. */
    KyStage *stage() const;
    /**
     * Takes \a stage over and shows its name. The stage that the item had is not deleted: from now on it is
     * the caller's. Null leaves the item without a stage and without a text.
     */
    void setStage(KyStage *stage);

    /** The stage's description, empty without a stage. */
    QString description() const;

    /** 128 x 128 pixels until set. The icon stays as it is until createIconImage() is called. */
    QSize iconSize() const;
    void setIconSize(const QSize &size);

    /**
     * Draws the icon anew, for the device-pixel ratios 1 to 3 in steps of a quarter. A stage that cannot be
     * drawn, one without a size for instance, gives a transparent icon. Without a stage the icon stays as it
     * is. Pixmaps above 8192 pixels are left out.
     */
    void createIconImage();

private:
    KyStage *m_stage = nullptr; // owned
    QSize m_iconSize = QSize(128, 128);
};

} // namespace Kyte
