#pragma once

#include <unordered_map>
#include <vector>

#include <QAbstractItemModel>
#include <QIcon>

#include "browser/MultiSelectTreeCtrl.h"

// Shows a library tree to Qt's views. An index holds the number of its item. Rows are counted once for each
// group and kept until the tree changes; Rebuild then makes Qt ask for everything anew.
class LibraryTreeModel : public QAbstractItemModel
{
    Q_OBJECT

public:
    LibraryTreeModel(const CLibraryTree& tree, QIcon leaf, QObject* pParent);
    static constexpr int c_nOpenIconRole = Qt::UserRole; // the icon of an item while it is expanded

    QModelIndex index(int nRow, int nColumn, const QModelIndex& parent = QModelIndex()) const override;
    QModelIndex parent(const QModelIndex& index) const override;
    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& = QModelIndex()) const override { return 1; }
    QVariant data(const QModelIndex& index, int nRole = Qt::DisplayRole) const override;
    bool hasChildren(const QModelIndex& parent = QModelIndex()) const override;

    QModelIndex IndexOf(HLibraryItem hItem) const; // invalid for a dead item
    static HLibraryItem ItemOf(const QModelIndex& index);
    void Rebuild();
    void TextChanged(HLibraryItem hItem);

private:
    const std::vector<HLibraryItem>& Children(HLibraryItem hParent) const;

    const CLibraryTree& m_Tree;
    QIcon m_Leaf;
    QIcon m_Closed;
    QIcon m_Open;
    mutable std::unordered_map<uint32_t, std::vector<HLibraryItem>> m_Children;
    mutable std::unordered_map<uint32_t, int> m_Rows;
};
