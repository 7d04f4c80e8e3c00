#pragma once

#include <cstddef>
#include <list>
#include <unordered_map>
#include <utility>

namespace navro {

// A map that holds at most `capacity` entries and lets the least recently used one go first.
template <typename Key, typename Value> class LruCache {
public:
    explicit LruCache(std::size_t capacity) : capacity_(capacity) {}

    // The value under `key`, which then counts as just used; nullptr when absent.
    const Value* find(const Key& key)
    {
        const auto found = index_.find(key);
        if (found == index_.end())
            return nullptr;
        entries_.splice(entries_.begin(), entries_, found->second);
        return &found->second->second;
    }

    void insert(const Key& key, Value value)
    {
        if (const auto found = index_.find(key); found != index_.end()) {
            found->second->second = std::move(value);
            entries_.splice(entries_.begin(), entries_, found->second);
            return;
        }
        entries_.emplace_front(key, std::move(value));
        index_.emplace(key, entries_.begin());
        while (entries_.size() > capacity_) {
            index_.erase(entries_.back().first);
            entries_.pop_back();
        }
    }

    std::size_t size() const { return entries_.size(); }

private:
    using Entries = std::list<std::pair<Key, Value>>;
    std::size_t capacity_;
    Entries entries_; // most recently used first
    std::unordered_map<Key, typename Entries::iterator> index_;
};

} // namespace navro
