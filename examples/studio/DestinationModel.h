#pragma once

#include <KyDestination.h>

#include <QAbstractItemModel>
#include <QHash>
#include <QVector>

/**
 * Destinations below the channels, or the groups, that they belong to; what is in none stands at the end.
 * Records are appended as they are read. Moving is asked for, not done: moveWanted(). A category's display
 * text tells how many are in it, its edit text is the name alone.
 */
class DestinationModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    using DataType = Kyte::KyDestination::DataType;
    enum Column { NameColumn, AddressColumn, FolderColumn, OtherColumn, ColumnCount };
    enum Role { IdRole = Qt::UserRole };
    static const int NO_CATEGORY = -1;

    explicit DestinationModel(QObject *parent = nullptr);

    DataType dataType() const;
    void setDataType(DataType type);

    void clear();
    /** Categories have to come before the destinations in them. */
    void append(const QList<Kyte::KyUploadItemInfo> &items);
    /** Sorts by name what was not read in that order. */
    void finish();

    void addCategory(DataType type, int id, const QString &name);
    void renameCategory(DataType type, int id, const QString &name);
    void removeCategory(DataType type, int id);
    void moveDestinations(const QList<int> &ids, int categoryId, DataType type);

    int destinationCount() const;
    /** Of the kind that is shown, without "none". */
    int categoryCount() const;
    QStringList categoryNames(DataType type) const;
    bool isCategory(const QModelIndex &index) const;
    /** Of the category, or of the one that the destination is in; NO_CATEGORY for none. */
    int categoryId(const QModelIndex &index) const;
    QModelIndex categoryIndex(int id) const;

    QModelIndex index(int row, int column, const QModelIndex &parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex &index) const override;
    using QObject::parent;
    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    QMap<int, QVariant> itemData(const QModelIndex &index) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    Qt::DropActions supportedDropActions() const override;
    bool dropMimeData(const QMimeData *data,
                      Qt::DropAction action,
                      int row,
                      int column,
                      const QModelIndex &parent) override;

signals:
    void moveWanted(const QList<int> &ids, int categoryId);

private:
    struct Category
    {
        int id;
        QString name;
    };
    struct Destination
    {
        int id;
        QString name;
        QString address;
        QString folder;
        int categories[2]; // by data type
        int row; // in its category
    };

    void appendDestinations(const QVector<Destination> &destinations);
    void appendCategory(DataType type, const Category &category);
    void distribute();
    void number();
    template<typename Edit>
    void rearrange(Edit edit);
    int rowOf(const Destination &destination) const;
    int noneRow() const;
    const Destination *destination(const QModelIndex &index) const;
    QVariant categoryData(int row, int column, int role) const;
    QVariant destinationText(const Destination &destination, int column) const;
    QString categoryName(DataType type, int id) const;

    DataType m_type = Kyte::KyDestination::Data_Channel;
    QVector<Category> m_categories[2]; // by data type, in the order of reading
    QVector<Destination> m_destinations;
    QHash<int, int> m_positions; // in m_destinations, by id
    QVector<QVector<int>> m_members; // positions, by row; empty until something was read
    QHash<int, int> m_rows; // by id of the category
};
