#pragma once

#include "containers/failures.h"
#include "containers/storage.h"

#include <cstdint>
#include <type_traits>

namespace zorvan {

/// A doubly linked list whose head is the top of a stack. It is plain data: all zero is the empty
/// list, so that it may stand in a block that is cleared as bytes. Therefore it has no destructor;
/// its owner calls clear().
template <typename T> class LinkedList {
public:
    struct Link {
        T value;
        Link* prev;
        Link* next;
    };

    static_assert(std::is_trivially_copyable_v<T>);

    std::int32_t getCount() const { return count; }
    bool isEmpty() const { return count == 0; }

    /// Puts value in at the head.
    void push(T value) { insertBefore(head, value); }

    /// Puts value in at the tail.
    void append(T value) { insertBefore(nullptr, value); }

    /// Puts value in front of a link of this list; null: at the tail. Returns the new link.
    Link* insertBefore(Link* position, T value)
    {
        if (count == kMaximumElements)
            throwOutOfStorage();
        Link* link = allocateElements<Link>(1).release();
        link->value = value;
        link->next = position;
        link->prev = position != nullptr ? position->prev : tail;
        (link->prev != nullptr ? link->prev->next : head) = link;
        (position != nullptr ? position->prev : tail) = link;
        ++count;
        return link;
    }

    /// Takes the head out and returns its value; the value of an empty list is all zero.
    T pop() { return head != nullptr ? remove(head) : T(); }

    /// Moves the head, which must be there, to the head of another list. Nothing is allocated.
    void moveHeadTo(LinkedList& other)
    {
        if (other.count == kMaximumElements)
            throwOutOfStorage();
        Link* link = head;
        head = link->next;
        (head != nullptr ? head->prev : tail) = nullptr;
        --count;
        link->next = other.head;
        (other.head != nullptr ? other.head->prev : other.tail) = link;
        other.head = link;
        ++other.count;
    }

    /// Takes a link of this list out and returns its value.
    T remove(Link* link)
    {
        const T value = link->value;
        (link->prev != nullptr ? link->prev->next : head) = link->next;
        (link->next != nullptr ? link->next->prev : tail) = link->prev;
        --count;
        releaseStorage(link);
        return value;
    }

    /// Frees all links. What the values point at stays.
    void clear()
    {
        while (head != nullptr) {
            Link* next = head->next;
            releaseStorage(head);
            head = next;
        }
        tail = nullptr;
        count = 0;
    }

    Link* head; // owned, as all links are; freed by pop, remove and clear
    Link* tail; // borrowed: the last link of the chain
    std::int32_t count; // links
};

/// A place between the elements of some list, in the order of the list.
template <typename T> class Iterator {
public:
    Iterator() = default;
    Iterator(const Iterator&) = delete;
    Iterator& operator=(const Iterator&) = delete;
    virtual ~Iterator() = default;

    virtual bool hasNext() const = 0;
    virtual T next() = 0;
    virtual bool hasPrevious() const = 0;
    virtual T previous() = 0;
};

/// Walks a linked list from its head. The list must outlive the iterator.
template <typename T> class LinkedListIterator : public Iterator<T> {
public:
    using Link = typename LinkedList<T>::Link;

    explicit LinkedListIterator(const LinkedList<T>& walked)
        : list(&walked)
        , current(walked.head)
        , atStart(true)
    {
    }

    bool hasNext() const override
    {
        return current != nullptr && (atStart || current->next != nullptr);
    }

    /// The first element at first, then each next one.
    T next() override
    {
        if (current == nullptr)
            throwContainerFailure(FAILURE_INDEX, "LinkedList.next(): List is empty");
        if (atStart) {
            atStart = false;
            return current->value;
        }
        if (current->next == nullptr)
            throwContainerFailure(
                FAILURE_INDEX, "LinkedList.next(): At end of list or list is empty");
        current = current->next;
        return current->value;
    }

    bool hasPrevious() const override { return current != nullptr && current->prev != nullptr; }

    /// Steps back by one and returns the element there. At the first element the iterator is as
    /// new: next() gives that element again.
    T previous() override
    {
        if (current == nullptr)
            throwContainerFailure(FAILURE_INDEX, "LinkedList.prev(): List is empty");
        if (atStart || current->prev == nullptr)
            throwContainerFailure(
                FAILURE_INDEX, "LinkedList.prev(): At beginning of list or list is empty");
        current = current->prev;
        atStart = current->prev == nullptr;
        return current->value;
    }

protected:
    const LinkedList<T>* list; // borrowed from whoever made the iterator
    Link* current; // null for an empty list
    bool atStart; // true until the first next()
};

/// Walks a linked list that may be changed meanwhile, away from the current link.
template <typename T> class MutableLinkedListIterator : public LinkedListIterator<T> {
public:
    explicit MutableLinkedListIterator(LinkedList<T>& walked)
        : LinkedListIterator<T>(walked)
    {
    }

    /// Steps back by one and returns the element there; the first element is not given again.
    T previous() override
    {
        if (this->current == nullptr)
            throwContainerFailure(FAILURE_INDEX, "LinkedList.prev(): List is empty");
        if (this->current->prev == nullptr) {
            // QUIRK(MutableLinkedListIterator.PreviousAtFirstLinkSpeaksOfNext): this iterator
            // reports the other end of the list.
            throwContainerFailure(
                FAILURE_INDEX, "LinkedList.next(): At end of list or list is empty");
        }
        this->current = this->current->prev;
        return this->current->value;
    }
};

} // namespace zorvan
