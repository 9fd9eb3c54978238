#pragma once

// Lists for views: rows are plain values with properties, and each property is a role.

#include <QAbstractListModel>
#include <QList>
#include <QtQmlIntegration>

#include <algorithm>

namespace velarc {

// What QML sees of a list. Main thread only.
class RowModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A presenter gives it")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    [[nodiscard]] int count() const { return rowCount({}); }
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

protected:
    RowModel(const QMetaObject &rowType, QObject *parent);
    [[nodiscard]] virtual const void *rowAt(int index) const = 0;

private:
    const QMetaObject &m_rowType;
};

// Row is a Q_GADGET with operator== and a key() that tells rows apart.
template <typename Row> class RowsOf final : public RowModel
{
public:
    explicit RowsOf(QObject *parent = nullptr) : RowModel(Row::staticMetaObject, parent) {}

    [[nodiscard]] const QList<Row> &rows() const { return m_rows; }
    [[nodiscard]] int rowCount(const QModelIndex &parent) const override
    {
        return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
    }

    // Shows `rows`. Those that stay at either end keep their items in the view; what lies between
    // is replaced.
    void setRows(QList<Row> rows)
    {
        const auto sameKey = [](const Row &left, const Row &right) {
            return left.key() == right.key();
        };
        const auto [oldEnd, newEnd] =
            std::mismatch(m_rows.cbegin(), m_rows.cend(), rows.cbegin(), rows.cend(), sameKey);
        const auto head = static_cast<int>(oldEnd - m_rows.cbegin());
        const qsizetype longest = std::min(m_rows.size(), rows.size()) - head;
        int tail = 0;
        while (tail < longest
            && sameKey(m_rows.at(m_rows.size() - 1 - tail), rows.at(rows.size() - 1 - tail))) {
            ++tail;
        }
        const auto oldCount = static_cast<int>(m_rows.size());
        replaceBetween(head, tail, rows);
        showChanges(rows, 0, head);
        showChanges(rows, static_cast<int>(rows.size()) - tail, static_cast<int>(rows.size()));
        if (oldCount != static_cast<int>(m_rows.size())) {
            Q_EMIT countChanged();
        }
    }

protected:
    [[nodiscard]] const void *rowAt(int index) const override { return &m_rows.at(index); }

private:
    QList<Row> m_rows;

    void replaceBetween(int head, int tail, const QList<Row> &rows)
    {
        const int oldMiddle = static_cast<int>(m_rows.size()) - head - tail;
        const int newMiddle = static_cast<int>(rows.size()) - head - tail;
        if (oldMiddle > 0) {
            beginRemoveRows({}, head, head + oldMiddle - 1);
            m_rows.remove(head, oldMiddle);
            endRemoveRows();
        }
        if (newMiddle > 0) {
            beginInsertRows({}, head, head + newMiddle - 1);
            m_rows = m_rows.first(head) + rows.mid(head, newMiddle) + m_rows.sliced(head);
            endInsertRows();
        }
    }

    void showChanges(const QList<Row> &rows, int first, int end)
    {
        for (int at = first; at < end; ++at) {
            if (!(m_rows.at(at) == rows.at(at))) {
                m_rows[at] = rows.at(at);
                Q_EMIT dataChanged(index(at), index(at));
            }
        }
    }
};

} // namespace velarc
