#include "DestinationModel.h"

#include <KyItemModelData.h>

#include <QFont>

#include <algorithm>

using namespace Kyte;

static const quintptr CATEGORY =
    0; // the internal id of categories; destinations have their position plus one

DestinationModel::DestinationModel(QObject *parent)
    : QAbstractItemModel(parent)
{
}

DestinationModel::DataType DestinationModel::dataType() const
{
    return m_type;
}

void DestinationModel::setDataType(DataType type)
{
    if (type == m_type)
        return;
    beginResetModel();
    m_type = type;
    if (!m_members.isEmpty())
        distribute();
    endResetModel();
}

void DestinationModel::clear()
{
    beginResetModel();
    for (QVector<Category> &categories : m_categories)
        categories.clear();
    m_destinations.clear();
    m_positions.clear();
    m_members.clear();
    m_rows.clear();
    endResetModel();
}

void DestinationModel::append(const QList<KyUploadItemInfo> &items)
{
    if (m_members.isEmpty()) {
        beginInsertRows(QModelIndex(), 0, 0);
        m_members.resize(1); // for what is in none
        endInsertRows();
    }
    QVector<Destination> destinations;
    for (const KyUploadItemInfo &item : items) {
        if (item.itemType() == KyUploadItemInfo::Item_Destination) {
            destinations.append({item.id(),
                                 item.name(),
                                 item.address(),
                                 item.sharedFolder(),
                                 {item.channelId(), item.groupId()},
                                 0});
        } else {
            // A category's item type is its data type plus one.
            appendCategory(static_cast<DataType>(item.itemType() - 1), {item.id(), item.name()});
        }
    }
    appendDestinations(destinations);
}

/** One insertion for each category concerned. */
void DestinationModel::appendDestinations(const QVector<Destination> &destinations)
{
    QMap<int, QVector<int>> newMembers; // by row of the category
    for (const Destination &destination : destinations) {
        if (m_positions.contains(destination.id))
            continue;
        const int position = m_destinations.size();
        m_positions.insert(destination.id, position);
        m_destinations.append(destination);
        newMembers[rowOf(destination)].append(position);
    }
    for (auto added = newMembers.cbegin(); added != newMembers.cend(); ++added) {
        QVector<int> &members = m_members[added.key()];
        beginInsertRows(index(added.key(), NameColumn), members.size(),
                        members.size() + added.value().size() - 1);
        for (int position : added.value()) {
            m_destinations[position].row = members.size();
            members.append(position);
        }
        endInsertRows();
        const QModelIndex category = index(added.key(), NameColumn); // its text has the number
        emit dataChanged(category, category);
    }
}

void DestinationModel::appendCategory(DataType type, const Category &category)
{
    if (type != m_type) {
        m_categories[type].append(category);
        return;
    }
    const int row = noneRow();
    beginInsertRows(QModelIndex(), row, row);
    m_categories[type].append(category);
    m_rows.insert(category.id, row);
    m_members.insert(row, QVector<int>());
    endInsertRows();
}

void DestinationModel::finish()
{
    const auto isLess = [](const Destination &one, const Destination &other) {
        return one.name < other.name;
    };
    if (std::is_sorted(m_destinations.cbegin(), m_destinations.cend(), isLess))
        return;
    rearrange([this, isLess]() {
        std::stable_sort(m_destinations.begin(), m_destinations.end(), isLess);
        number();
    });
}

void DestinationModel::addCategory(DataType type, int id, const QString &name)
{
    if (m_members.isEmpty())
        append({});
    appendCategory(type, {id, name});
}

void DestinationModel::renameCategory(DataType type, int id, const QString &name)
{
    for (Category &category : m_categories[type]) {
        if (category.id == id)
            category.name = name;
    }
    const QModelIndex renamed = type == m_type ? categoryIndex(id) : QModelIndex();
    if (renamed.isValid())
        emit dataChanged(renamed, renamed);
}

void DestinationModel::removeCategory(DataType type, int id)
{
    QList<int> members;
    for (const Destination &destination : qAsConst(m_destinations)) {
        if (destination.categories[type] == id)
            members.append(destination.id);
    }
    moveDestinations(members, NO_CATEGORY, type);
    QVector<Category> &categories = m_categories[type];
    const auto removed = std::find_if(categories.begin(), categories.end(), [id](const Category &category) {
        return category.id == id;
    });
    if (removed == categories.end())
        return;
    const int row = int(removed - categories.begin());
    if (type == m_type)
        beginRemoveRows(QModelIndex(), row, row);
    categories.erase(removed);
    if (type == m_type) {
        distribute();
        endRemoveRows();
    }
}

void DestinationModel::moveDestinations(const QList<int> &ids, int categoryId, DataType type)
{
    if (ids.isEmpty())
        return;
    rearrange([this, ids, categoryId, type]() {
        for (int id : ids) {
            const auto position = m_positions.constFind(id);
            if (position != m_positions.constEnd())
                m_destinations[*position].categories[type] = categoryId;
        }
    });
}

int DestinationModel::destinationCount() const
{
    return m_destinations.size();
}

int DestinationModel::categoryCount() const
{
    return m_categories[m_type].size();
}

QStringList DestinationModel::categoryNames(DataType type) const
{
    QStringList names;
    for (const Category &category : m_categories[type])
        names.append(category.name);
    return names;
}

bool DestinationModel::isCategory(const QModelIndex &index) const
{
    return index.isValid() && index.internalId() == CATEGORY;
}

int DestinationModel::categoryId(const QModelIndex &index) const
{
    if (!index.isValid())
        return NO_CATEGORY;
    const int row = isCategory(index) ? index.row() : rowOf(*destination(index));
    return row < noneRow() ? m_categories[m_type].at(row).id : NO_CATEGORY;
}

QModelIndex DestinationModel::categoryIndex(int id) const
{
    return index(m_rows.value(id, noneRow()), NameColumn);
}

QModelIndex DestinationModel::index(int row, int column, const QModelIndex &parent) const
{
    if (!hasIndex(row, column, parent))
        return QModelIndex();
    if (!parent.isValid())
        return createIndex(row, column, CATEGORY);
    return createIndex(row, column, quintptr(m_members.at(parent.row()).at(row)) + 1);
}

QModelIndex DestinationModel::parent(const QModelIndex &index) const
{
    const Destination *child = destination(index);
    return child ? createIndex(rowOf(*child), NameColumn, CATEGORY) : QModelIndex();
}

int DestinationModel::rowCount(const QModelIndex &parent) const
{
    if (!parent.isValid())
        return m_members.size();
    return isCategory(parent) && parent.column() == NameColumn ? m_members.at(parent.row()).size() : 0;
}

int DestinationModel::columnCount(const QModelIndex &) const
{
    return ColumnCount;
}

QVariant DestinationModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const Destination *shown = destination(index);
    if (!shown)
        return categoryData(index.row(), index.column(), role);
    if (role == IdRole)
        return shown->id;
    return role == Qt::DisplayRole ? destinationText(*shown, index.column()) : QVariant();
}

QVariant DestinationModel::categoryData(int row, int column, int role) const
{
    const bool isNone = row == noneRow();
    if (role == Qt::FontRole && column == NameColumn) {
        QFont font;
        font.setBold(!isNone);
        font.setItalic(isNone);
        return font;
    }
    if (column != NameColumn || (role != Qt::DisplayRole && role != Qt::EditRole))
        return QVariant();
    const QString name = !isNone                ? m_categories[m_type].at(row).name
        : m_type == KyDestination::Data_Channel ? tr("In no channel")
                                                : tr("In no group");
    return role == Qt::EditRole ? name : tr("%1 (%2)").arg(name).arg(m_members.at(row).size());
}

QVariant DestinationModel::destinationText(const Destination &destination, int column) const
{
    switch (column) {
    case NameColumn:
        return destination.name;
    case AddressColumn:
        return destination.address;
    case FolderColumn:
        return destination.folder;
    default: {
        const DataType other =
            m_type == KyDestination::Data_Channel ? KyDestination::Data_Group : KyDestination::Data_Channel;
        return categoryName(other, destination.categories[other]);
    }
    }
}

/** What a dragged row carries: nothing but which destination it is. */
QMap<int, QVariant> DestinationModel::itemData(const QModelIndex &index) const
{
    const QVariant id = index.column() == NameColumn ? data(index, IdRole) : QVariant();
    return id.isValid() ? QMap<int, QVariant>{{IdRole, id}} : QMap<int, QVariant>();
}

QVariant DestinationModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (role != Qt::DisplayRole || orientation != Qt::Horizontal)
        return QVariant();
    switch (section) {
    case NameColumn:
        return tr("Name");
    case AddressColumn:
        return tr("Address");
    case FolderColumn:
        return tr("Shared folder");
    default:
        return m_type == KyDestination::Data_Channel ? tr("Group") : tr("Channel");
    }
}

Qt::ItemFlags DestinationModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    const Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemIsDropEnabled;
    return isCategory(index) ? flags : flags | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren;
}

Qt::DropActions DestinationModel::supportedDropActions() const
{
    return Qt::MoveAction;
}

bool DestinationModel::dropMimeData(
    const QMimeData *data, Qt::DropAction action, int, int, const QModelIndex &parent)
{
    if (action != Qt::MoveAction || !parent.isValid())
        return false;
    const int target = categoryId(parent);
    QList<int> ids;
    const QVector<QMap<int, QVariant>> records =
        KyItemModelData::decodeData(data, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    for (const QMap<int, QVariant> &record : records) {
        const int position = m_positions.value(record.value(IdRole, -1).toInt(), -1);
        // Each column of a row is a record, only one has the id.
        if (position >= 0 && m_destinations.at(position).categories[m_type] != target)
            ids.append(m_destinations.at(position).id);
    }
    if (ids.isEmpty())
        return false;
    emit moveWanted(ids, target);
    return true;
}

/** Puts each destination below its category, in the order of all destinations. */
void DestinationModel::distribute()
{
    m_rows.clear();
    const QVector<Category> &categories = m_categories[m_type];
    for (int row = 0; row < categories.size(); ++row)
        m_rows.insert(categories.at(row).id, row);
    m_members = QVector<QVector<int>>(categories.size() + 1);
    for (int position = 0; position < m_destinations.size(); ++position) {
        QVector<int> &members = m_members[rowOf(m_destinations.at(position))];
        m_destinations[position].row = members.size();
        members.append(position);
    }
}

void DestinationModel::number()
{
    for (int position = 0; position < m_destinations.size(); ++position)
        m_positions.insert(m_destinations.at(position).id, position);
}

/** Views keep what is current, selected and expanded: their indexes are led to where the same rows are. */
template<typename Edit>
void DestinationModel::rearrange(Edit edit)
{
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    QVector<int> ids; // of the destinations; those of categories stay
    for (const QModelIndex &old : before)
        ids.append(isCategory(old) ? -1 : destination(old)->id);
    edit();
    distribute();
    QModelIndexList after;
    for (int i = 0; i < before.size(); ++i) {
        const QModelIndex &old = before.at(i);
        if (isCategory(old)) {
            after.append(old);
            continue;
        }
        const int position = m_positions.value(ids.at(i));
        after.append(createIndex(m_destinations.at(position).row, old.column(), quintptr(position) + 1));
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

int DestinationModel::rowOf(const Destination &destination) const
{
    return m_rows.value(destination.categories[m_type], noneRow());
}

int DestinationModel::noneRow() const
{
    return m_categories[m_type].size();
}

/** Null for a category and for no index. */
const DestinationModel::Destination *DestinationModel::destination(const QModelIndex &index) const
{
    if (!index.isValid() || index.internalId() == CATEGORY)
        return nullptr;
    return &m_destinations.at(int(index.internalId()) - 1);
}

QString DestinationModel::categoryName(DataType type, int id) const
{
    for (const Category &category : m_categories[type]) {
        if (category.id == id)
            return category.name;
    }
    return QString();
}
