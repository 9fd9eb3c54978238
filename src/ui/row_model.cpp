#include "ui/row_model.h"

#include <QMetaProperty>

namespace velarc {

RowModel::RowModel(const QMetaObject &rowType, QObject *parent)
    : QAbstractListModel(parent), m_rowType(rowType)
{
}

QVariant RowModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid) || role < Qt::UserRole) {
        return {};
    }
    return m_rowType.property(role - Qt::UserRole).readOnGadget(rowAt(index.row()));
}

QHash<int, QByteArray> RowModel::roleNames() const
{
    QHash<int, QByteArray> names;
    for (int at = 0; at < m_rowType.propertyCount(); ++at) {
        names.insert(Qt::UserRole + at, m_rowType.property(at).name());
    }
    return names;
}

} // namespace velarc
