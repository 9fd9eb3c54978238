#pragma once

// The content of a password field: one line of text that leaves nothing behind.

#include "base/secret.h"

#include <strings.h>

#include <algorithm>
#include <cstddef>
#include <memory>
#include <vector>

namespace velarc {

// Overwrites what it gives back.
template <typename T> struct WipingAllocator
{
    using value_type = T;

    WipingAllocator() = default;
    template <typename Other> explicit WipingAllocator(const WipingAllocator<Other> &) {}

    [[nodiscard]] T *allocate(std::size_t count) { return std::allocator<T>().allocate(count); }
    void deallocate(T *memory, std::size_t count)
    {
        explicit_bzero(memory, count * sizeof(T));
        std::allocator<T>().deallocate(memory, count);
    }

    friend bool operator==(const WipingAllocator &, const WipingAllocator &) { return true; }
};

// A text with a cursor and a selection, without a history. Places count UTF-16 units and never fall
// between the halves of a character. Any thread.
class SecretLine
{
public:
    static constexpr qsizetype kMaximumLength = 16 * 1024; // what comes beyond is dropped

    enum class Select
    {
        Nothing,
        UpToCursor
    };

    [[nodiscard]] qsizetype length() const { return static_cast<qsizetype>(m_text.size()); }
    [[nodiscard]] qsizetype cursor() const { return m_cursor; }
    [[nodiscard]] qsizetype selectionStart() const { return std::min(m_anchor, m_cursor); }
    [[nodiscard]] qsizetype selectionEnd() const { return std::max(m_anchor, m_cursor); }
    [[nodiscard]] bool hasSelection() const { return m_anchor != m_cursor; }

    // The text. The only way out.
    [[nodiscard]] Secret secret() const;

    // Puts `text` in the place of the selection. Control characters, line ends too, fall away.
    void insert(QStringView text);

    // The selection where there is one, else the character before or behind the cursor.
    void removeBackward();
    void removeForward();
    void removeToStart();

    // Forgets and overwrites everything.
    void clear();

    void moveTo(qsizetype place, Select select);
    void moveBy(int characters, Select select);
    void selectAll();

private:
    using Text = std::vector<char16_t, WipingAllocator<char16_t>>;

    Text m_text;
    qsizetype m_cursor = 0;
    qsizetype m_anchor = 0;

    [[nodiscard]] qsizetype before(qsizetype place) const;
    [[nodiscard]] qsizetype behind(qsizetype place) const;
    void remove(qsizetype start, qsizetype end);
};

} // namespace velarc
