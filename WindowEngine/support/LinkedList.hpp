// Lists that run through their members: linking and unlinking allocate nothing and cannot fail, which is what
// cancellation and the end of a task need.
#pragma once

namespace quillo {

template <class T>
class LinkedList;

/// Base of what can stand in a LinkedList<T>; leaves its list when it dies.
template <class T>
class Linked {
  public:
    Linked(const Linked&) = delete;
    Linked& operator=(const Linked&) = delete;

    void unlink() noexcept {
        previous_->next_ = next_;
        next_->previous_ = previous_;
        previous_ = next_ = this;
    }

  protected:
    Linked() = default;
    ~Linked() { unlink(); }

  private:
    friend class LinkedList<T>;
    Linked* previous_ = this;
    Linked* next_ = this;
};

/// Owns nothing; members in the order they were appended.
template <class T>
class LinkedList {
  public:
    bool empty() const noexcept { return head_.next_ == &head_; }
    T& front() noexcept { return static_cast<T&>(*head_.next_); }

    void append(T& member) noexcept {
        Linked<T>& link = member;
        link.unlink();
        link.previous_ = head_.previous_;
        link.next_ = &head_;
        head_.previous_->next_ = &link;
        head_.previous_ = &link;
    }

    /// `visit` may unlink the member it is given, no other.
    template <class Visit>
    void forEach(Visit visit) {
        for (Linked<T>* link = head_.next_; link != &head_;) {
            Linked<T>* next = link->next_;
            visit(static_cast<T&>(*link));
            link = next;
        }
    }

  private:
    struct Head final : Linked<T> {};
    Head head_;
};

}  // namespace quillo
