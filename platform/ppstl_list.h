#pragma once

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <type_traits>
#include <utility>

/// The flow's list of pointers: a circular doubly linked list whose head is two pointers wide. It owns its nodes, but
/// never what they point to. Its operations are those of std::list; size() walks the list.
template <class T>
class ppStlList {
    struct Link {
        Link* next;
        Link* prev;
    };
    struct Node : Link {
        T value;
    };

    template <bool Const>
    class Iter {
    public:
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = std::conditional_t<Const, T const*, T*>;
        using reference = std::conditional_t<Const, T const&, T&>;

        Iter() = default;
        template <bool Other, class = std::enable_if_t<Const && !Other>>
        Iter(Iter<Other> other) : link_(other.link_) {}

        reference operator*() const { return static_cast<Node*>(link_)->value; }
        pointer operator->() const { return &**this; }
        Iter& operator++() {
            link_ = link_->next;
            return *this;
        }
        Iter& operator--() {
            link_ = link_->prev;
            return *this;
        }
        Iter operator++(int) {
            Iter before = *this;
            ++*this;
            return before;
        }
        Iter operator--(int) {
            Iter before = *this;
            --*this;
            return before;
        }
        friend bool operator==(Iter a, Iter b) { return a.link_ == b.link_; }
        friend bool operator!=(Iter a, Iter b) { return a.link_ != b.link_; }

    private:
        friend class ppStlList;
        template <bool>
        friend class Iter;
        explicit Iter(Link* link) : link_(link) {}

        Link* link_ = nullptr;
    };

public:
    using value_type = T;
    using size_type = std::size_t;
    using difference_type = std::ptrdiff_t;
    using reference = T&;
    using const_reference = T const&;
    using iterator = Iter<false>;
    using const_iterator = Iter<true>;
    using reverse_iterator = std::reverse_iterator<iterator>;
    using const_reverse_iterator = std::reverse_iterator<const_iterator>;

    ppStlList() noexcept : head_{&head_, &head_} {}
    ppStlList(std::initializer_list<T> values) : ppStlList() {
        for (T const& value : values) push_back(value);
    }
    ppStlList(ppStlList const& other) : ppStlList() {
        for (T const& value : other) push_back(value);
    }
    ppStlList(ppStlList&& other) noexcept : ppStlList() { swap(other); }
    ppStlList& operator=(ppStlList const& other) {
        ppStlList copy(other);
        swap(copy);
        return *this;
    }
    ppStlList& operator=(ppStlList&& other) noexcept {
        ppStlList taken(std::move(other));
        swap(taken);
        return *this;
    }
    ~ppStlList() { clear(); }

    iterator begin() noexcept { return iterator(head_.next); }
    iterator end() noexcept { return iterator(&head_); }
    const_iterator begin() const noexcept { return const_iterator(head_.next); }
    const_iterator end() const noexcept { return const_iterator(headAddress()); }
    const_iterator cbegin() const noexcept { return begin(); }
    const_iterator cend() const noexcept { return end(); }
    reverse_iterator rbegin() noexcept { return reverse_iterator(end()); }
    reverse_iterator rend() noexcept { return reverse_iterator(begin()); }
    const_reverse_iterator rbegin() const noexcept { return const_reverse_iterator(end()); }
    const_reverse_iterator rend() const noexcept { return const_reverse_iterator(begin()); }

    bool empty() const noexcept { return head_.next == &head_; }
    size_type size() const noexcept { return static_cast<size_type>(std::distance(begin(), end())); }
    reference front() { return *begin(); }
    const_reference front() const { return *begin(); }
    reference back() { return *--end(); }
    const_reference back() const { return *--end(); }

    void push_back(T const& value) { insert(end(), value); }
    void push_front(T const& value) { insert(begin(), value); }
    void pop_back() { erase(--end()); }
    void pop_front() { erase(begin()); }

    iterator insert(const_iterator before, T const& value) {
        Link* const next = before.link_;
        Node* const node = new Node{{next, next->prev}, value};
        next->prev->next = node;
        next->prev = node;
        return iterator(node);
    }
    iterator erase(const_iterator at) {
        Link* const link = at.link_;
        Link* const next = link->next;
        link->prev->next = next;
        next->prev = link->prev;
        delete static_cast<Node*>(link);
        return iterator(next);
    }
    iterator erase(const_iterator first, const_iterator last) {
        while (first != last) first = erase(first);
        return iterator(last.link_);
    }
    void clear() noexcept {
        for (Link* link = head_.next; link != &head_;) {
            Node* const node = static_cast<Node*>(link);
            link = link->next;
            delete node;
        }
        head_ = {&head_, &head_};
    }
    void swap(ppStlList& other) noexcept {
        std::swap(head_, other.head_);
        adopt(other.head_);
        other.adopt(head_);
    }

private:
    Link* headAddress() const noexcept { return const_cast<Link*>(&head_); }

    // Makes the neighbours of a head that was copied from `old` point to this list's own head.
    void adopt(Link const& old) noexcept {
        if (head_.next == &old) {
            head_ = {&head_, &head_};
        } else {
            head_.next->prev = &head_;
            head_.prev->next = &head_;
        }
    }

    Link head_;
};
