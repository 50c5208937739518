// The registry of containers that use an implementation: a hash map from an owner key (the
// address of the container's implementation) to its "owned" flag. 47 buckets, the bucket of a
// key being the key modulo 47; nodes come from KrsPlex blocks of 10 and are recycled through a
// free list, so thousands of registrations cost one block per ten owners and no per-node heap
// call. The bucket table is allocated on the first registration: most implementations are never
// registered anywhere and then carry four words and no heap memory.
#pragma once

#include <cstdint>
#include <cstdlib>

#include "KrsPlex.h"

class KrOwnerRegistry {
public:
  static constexpr unsigned kHashSize = 47;
  static constexpr unsigned kBlockSize = 10;

  KrOwnerRegistry() = default;
  // Registrations belong to one implementation object: they are never copied.
  KrOwnerRegistry(const KrOwnerRegistry&) = delete;
  KrOwnerRegistry& operator=(const KrOwnerRegistry&) = delete;
  ~KrOwnerRegistry() { clear(); }

  // Inserts the owner or overwrites its flag. Answers false only when memory is exhausted
  // (nothing is registered then).
  bool set(const void* owner, bool owned) {
    if (Node* node = find(owner)) {
      node->owned = owned;
      return true;
    }
    if (!m_buckets) {
      m_buckets = static_cast<Node**>(std::calloc(kHashSize, sizeof(Node*)));
      if (!m_buckets) return false;
    }
    Node* node = newNode();
    if (!node) return false;
    Node*& head = m_buckets[bucketOf(owner)];
    node->key = owner;
    node->owned = owned;
    node->next = head;
    head = node;
    ++m_count;
    return true;
  }

  // Removes the owner; false when it was not registered.
  bool remove(const void* owner) {
    if (!m_buckets) return false;
    for (Node** link = &m_buckets[bucketOf(owner)]; *link; link = &(*link)->next) {
      Node* node = *link;
      if (node->key != owner) continue;
      *link = node->next;
      node->next = m_free;
      m_free = node;
      if (--m_count == 0) clear();  // give the blocks back once nobody is registered
      return true;
    }
    return false;
  }

  bool isEmpty() const { return m_count == 0; }
  unsigned count() const { return m_count; }

  // True at the first entry whose flag is set.
  bool anyOwned() const {
    if (!m_buckets) return false;
    for (unsigned bucket = 0; bucket < kHashSize; ++bucket)
      for (const Node* node = m_buckets[bucket]; node; node = node->next)
        if (node->owned) return true;
    return false;
  }

  // The flag of a registered owner, or false when it is not registered.
  bool isRegistered(const void* owner, bool* owned = nullptr) const {
    const Node* node = find(owner);
    if (node && owned) *owned = node->owned;
    return node != nullptr;
  }

private:
  struct Node {
    Node* next;
    const void* key;
    bool owned;
  };

  static unsigned bucketOf(const void* owner) {
    return static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(owner) % kHashSize);
  }

  Node* find(const void* owner) const {
    if (!m_buckets) return nullptr;
    for (Node* node = m_buckets[bucketOf(owner)]; node; node = node->next)
      if (node->key == owner) return node;
    return nullptr;
  }

  // Takes a node from the free list, refilling it with a new block of kBlockSize nodes.
  Node* newNode() {
    if (!m_free) {
      KrsPlex* block = KrsPlex::Create(m_blocks, kBlockSize, sizeof(Node));
      if (!block) return nullptr;
      Node* nodes = static_cast<Node*>(block->data());
      for (unsigned i = kBlockSize; i-- > 0;) {
        nodes[i].next = m_free;
        m_free = &nodes[i];
      }
    }
    Node* node = m_free;
    m_free = node->next;
    return node;
  }

  void clear() {
    std::free(m_buckets);
    m_buckets = nullptr;
    if (m_blocks) m_blocks->FreeDataChain();
    m_blocks = nullptr;
    m_free = nullptr;
    m_count = 0;
  }

  Node** m_buckets = nullptr;  // kHashSize heads, allocated on the first registration
  Node* m_free = nullptr;      // recycled and not yet used nodes
  KrsPlex* m_blocks = nullptr; // chain of node blocks
  unsigned m_count = 0;
};
