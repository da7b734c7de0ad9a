#include "qt/library/LibraryTreeModel.h"

#include "app/resources/TreeIcons.h"
#include "qt/toolkit/PropertyControls.h"
#include "qt/toolkit/QtText.h"

LibraryTreeModel::LibraryTreeModel(const CLibraryTree& tree, QIcon leaf, QObject* pParent)
    : QAbstractItemModel(pParent),
      m_Tree(tree),
      m_Leaf(std::move(leaf)),
      m_Closed(ArtIcon(c_FolderClosedIcon)),
      m_Open(ArtIcon(c_FolderOpenIcon))
{
}

const std::vector<HLibraryItem>& LibraryTreeModel::Children(HLibraryItem hParent) const
{
    const auto it = m_Children.find(hParent.m_nID);
    if (it != m_Children.end())
        return it->second;
    std::vector<HLibraryItem>& list = m_Children[hParent.m_nID];
    for (HLibraryItem h = hParent ? m_Tree.GetChildItem(hParent) : m_Tree.GetRootItem(); h;
         h = m_Tree.GetNextSiblingItem(h))
    {
        m_Rows[h.m_nID] = static_cast<int>(list.size());
        list.push_back(h);
    }
    return list;
}

HLibraryItem LibraryTreeModel::ItemOf(const QModelIndex& index)
{
    return HLibraryItem{index.isValid() ? static_cast<uint32_t>(index.internalId()) : 0};
}

QModelIndex LibraryTreeModel::IndexOf(HLibraryItem hItem) const
{
    if (!m_Tree.IsAlive(hItem))
        return QModelIndex();
    Children(m_Tree.GetParentItem(hItem));
    const auto it = m_Rows.find(hItem.m_nID);
    return it == m_Rows.end() ? QModelIndex() : createIndex(it->second, 0, quintptr(hItem.m_nID));
}

QModelIndex LibraryTreeModel::index(int nRow, int nColumn, const QModelIndex& parent) const
{
    const std::vector<HLibraryItem>& list = Children(ItemOf(parent));
    if (nColumn != 0 || nRow < 0 || size_t(nRow) >= list.size())
        return QModelIndex();
    return createIndex(nRow, 0, quintptr(list[size_t(nRow)].m_nID));
}

QModelIndex LibraryTreeModel::parent(const QModelIndex& index) const
{
    return IndexOf(m_Tree.GetParentItem(ItemOf(index)));
}

int LibraryTreeModel::rowCount(const QModelIndex& parent) const
{
    return parent.column() > 0 ? 0 : static_cast<int>(Children(ItemOf(parent)).size());
}

bool LibraryTreeModel::hasChildren(const QModelIndex& parent) const
{
    return parent.isValid() ? m_Tree.HasChildren(ItemOf(parent)) : bool(m_Tree.GetRootItem());
}

QVariant LibraryTreeModel::data(const QModelIndex& index, int nRole) const
{
    const HLibraryItem hItem = ItemOf(index);
    switch (nRole)
    {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return QtText::ToQt(m_Tree.GetItemText(hItem));
    case Qt::DecorationRole:
        return m_Tree.IsGroup(hItem) ? m_Closed : m_Leaf;
    case c_nOpenIconRole:
        return m_Tree.IsGroup(hItem) ? m_Open : m_Leaf;
    default:
        return QVariant();
    }
}

void LibraryTreeModel::Rebuild()
{
    // Nobody has asked since the last time: of ten thousand items that go, the first one does it for all.
    if (m_Children.empty())
        return;
    beginResetModel();
    m_Children.clear();
    m_Rows.clear();
    endResetModel();
}

void LibraryTreeModel::TextChanged(HLibraryItem hItem)
{
    const QModelIndex index = IndexOf(hItem);
    if (index.isValid())
        emit dataChanged(index, index);
}
