// SPDX-License-Identifier: Apache-2.0
#include "rz/persistent.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <vector>

#include "rz/archive.h"
#include "rz/math_error.h"

namespace {

using Bytes = std::vector<unsigned char>;

// A counted object that may point to others of its kind.
class Node : public rzPersistent, public rzRepBase {
 public:
  explicit Node(rzLong theValue = 0) : value(theValue) { alive.insert(this); }
  Node(const Node&) = delete;
  Node& operator=(const Node&) = delete;
  ~Node() override { alive.erase(this); }

  static std::set<Node*> alive;
  static const rz_Instantiator sExemplar;
  rzLong value;
  rzPtrHandle<Node> next;
  rzPtrHandle_const<Node> other;

 protected:
  void dispatchSerialize(rzArchive& archive) override {
    if (haveVisited(archive, this, sizeof(*this))) return;
    archive || value;
    rf_SerializeHandle(archive, next);
    rf_SerializeHandle(archive, other);
    setVisited(archive, this, sizeof(*this));
  }

 private:
  static rzPersistent* make() { return new Node; }
};
std::set<Node*> Node::alive;
const rz_Instantiator Node::sExemplar(typeid(Node), &Node::make);

// Another registered class, whose count sits in a virtual base.
class Leaf : public rzPersistent, public virtual rzRepBase {
 public:
  static const rz_Instantiator sExemplar;
  rzLong value = 0;

 protected:
  void dispatchSerialize(rzArchive& archive) override { archive || value; }

 private:
  static rzPersistent* make() { return new Leaf; }
};
const rz_Instantiator Leaf::sExemplar(typeid(Leaf), &Leaf::make);

// Moves its base level through two paths, as a class with two bases of one kind does.
class TwoPaths : public rzPersistent {
 protected:
  void level(rzArchive& archive) {
    if (haveVisited(archive, this, 1)) return;
    archive || value_;
    setVisited(archive, this, 1);
  }
  void dispatchSerialize(rzArchive& archive) override {
    level(archive);
    level(archive);
  }

 private:
  rzLong value_ = 0;
};

class Unregistered : public rzPersistent {};

Bytes storedGraph(rzPtrHandle<Node> root) {
  Bytes bytes;
  auto archive = rzArchive::storingTo(bytes);
  rf_SerializeHandle(archive, root);
  return bytes;
}

rzPtrHandle<Node> loadedGraph(const Bytes& bytes) {
  auto archive = rzArchive::loadingFrom(bytes);
  rzPtrHandle<Node> root;
  rf_SerializeHandle(archive, root);
  EXPECT_EQ(archive.remaining(), 0u);
  return root;
}

rzPtrHandle<Node> chain(int length) {
  rzPtrHandle<Node> first;
  for (int i = 0; i < length; ++i) {
    rzPtrHandle<Node> node(new Node(i));
    node->next = first;
    first = node;
  }
  return first;
}

// Takes the nodes beside `kept` apart: a changed id may have made a cycle, which handles alone
// would keep for ever.
void cutLinks(const std::set<Node*>& kept) {
  std::vector<rzPtrHandle<Node>> others;
  for (Node* node : Node::alive)
    if (!kept.contains(node)) others.emplace_back(node);
  for (const rzPtrHandle<Node>& node : others) {
    node->next = nullptr;
    node->other = nullptr;
  }
}

}  // namespace

TEST(Persistent, SharedObjectsAndCyclesComeBackAsTheyWere) {
  rzPtrHandle<Node> root(new Node(1));
  root->next = rzPtrHandle<Node>(new Node(2));
  root->other = root->next;
  root->next->next = root;
  const Bytes bytes = storedGraph(root);
  root->next->next = nullptr;
  const rzPtrHandle<Node> back = loadedGraph(bytes);
  EXPECT_EQ(back->value, 1);
  EXPECT_EQ(back->next->value, 2);
  EXPECT_EQ(back->other, back->next);
  EXPECT_EQ(back->next->next, back);
  EXPECT_EQ(back->next->refCount(), 2);
  back->next->next = nullptr;
  EXPECT_EQ(storedGraph(nullptr), Bytes(4, 0));
  EXPECT_TRUE(loadedGraph(Bytes(4, 0)).isNull());
}

TEST(Persistent, EachTruncationAndChangedByteLoadsOrFailsCleanly) {
  rzPtrHandle<Node> root = chain(3);
  root->other = root->next;
  const Bytes whole = storedGraph(root);
  const std::set<Node*> originals = Node::alive;
  for (std::size_t size = 0; size < whole.size(); ++size) {
    const Bytes part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_THROW(loadedGraph(part), rzArchive::BadFormat) << size;
    EXPECT_EQ(Node::alive, originals) << size;
  }
  int numRefused = 0;
  for (std::size_t i = 0; i < whole.size() * 4; ++i) {
    Bytes changed = whole;
    constexpr unsigned char kFlips[] = {0x01, 0x03, 0x80, 0xFF};
    changed[i / 4] ^= kFlips[i % 4];
    auto archive = rzArchive::loadingFrom(changed);
    rzPtrHandle<Node> back;
    try {
      rf_SerializeHandle(archive, back);
    } catch (const rzException&) {
      ++numRefused;
    }
    cutLinks(originals);
  }
  EXPECT_GT(numRefused, 0);
  EXPECT_EQ(Node::alive, originals);
}

TEST(Persistent, ObjectOfAnotherClassIsBadFormatWhetherNewOrKnown) {
  rzPtrHandle<Leaf> leaf(new Leaf);
  Bytes bytes;
  {
    auto archive = rzArchive::storingTo(bytes);
    rf_SerializeHandle(archive, leaf);
    rf_SerializeHandle(archive, leaf);
  }
  rzPtrHandle<Node> node(new Node(5));
  auto asNew = rzArchive::loadingFrom(bytes);
  EXPECT_THROW(rf_SerializeHandle(asNew, node), rzArchive::BadFormat);
  EXPECT_EQ(node->value, 5);

  auto asKnown = rzArchive::loadingFrom(bytes);
  rzPtrHandle<Leaf> back;
  rf_SerializeHandle(asKnown, back);
  EXPECT_THROW(rf_SerializeHandle(asKnown, node), rzArchive::BadFormat);
}

TEST(Persistent, NestingIsRefusedBeyond64InBothDirections) {
  EXPECT_NO_THROW(loadedGraph(storedGraph(chain(64))));
  EXPECT_THROW(storedGraph(chain(65)), rzArchive::BadFormat);

  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  for (rzULong id = 1; id <= 100000; ++id)
    out << id << std::string("(anonymous namespace)::Node") << rzLong{0};
  EXPECT_THROW(loadedGraph(bytes), rzArchive::BadFormat);
}

TEST(Persistent, UnknownClassAndIdFromTheFutureAreRefused) {
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  out << rzULong{1} << std::string("rzNoSuchClass");
  EXPECT_THROW(loadedGraph(bytes), rzArchive::UnknownClass);
  const std::unique_ptr<Unregistered> own(new Unregistered);
  Unregistered* object = own.get();
  EXPECT_THROW(rzPersistent::serializePointer(out, object), rzArchive::UnknownClass);
  EXPECT_THROW(loadedGraph({2, 0, 0, 0, 0, 0, 0, 0}), rzArchive::BadFormat);
}

TEST(Persistent, LevelReachedTwiceInOneObjectIsMovedOnceEachTimeTheObjectIs) {
  TwoPaths object;
  Bytes bytes;
  auto archive = rzArchive::storingTo(bytes);
  archive || object || object;
  EXPECT_EQ(bytes.size(), 8u);
}

// Two owners of one object would both delete it.
TEST(Persistent, ObjectThatIsNotCountedIsNeverShared) {
  rzException* error = new rzMathError::Singular("flat");
  const std::unique_ptr<rzException> own(error);
  Bytes bytes;
  auto out = rzArchive::storingTo(bytes);
  rzPersistent::serializePointer(out, error);
  rzPersistent::serializePointer(out, error);
  out << rzULong{1};  // forged: the first one again
  auto in = rzArchive::loadingFrom(bytes);
  rzException* loaded[3] = {};
  rzPersistent::serializePointer(in, loaded[0]);
  rzPersistent::serializePointer(in, loaded[1]);
  const std::unique_ptr<rzException> ownFirst(loaded[0]);
  const std::unique_ptr<rzException> ownSecond(loaded[1]);
  EXPECT_NE(loaded[0], loaded[1]);
  EXPECT_STREQ(loaded[1]->what(), "flat");
  EXPECT_THROW(rzPersistent::serializePointer(in, loaded[2]), rzArchive::BadFormat);
  EXPECT_EQ(loaded[2], nullptr);
}

TEST(Persistent, StoringKeepsObjectsSoThatNoAddressComesBack) {
  Bytes bytes;
  auto archive = rzArchive::storingTo(bytes);
  const std::size_t before = Node::alive.size();
  for (rzLong i = 0; i < 100; ++i) {
    rzPtrHandle<Node> shortLived(new Node(i));
    rf_SerializeHandle(archive, shortLived);
  }
  EXPECT_EQ(Node::alive.size(), before + 100);
  auto in = rzArchive::loadingFrom(bytes);
  for (rzLong i = 0; i < 100; ++i) {
    rzPtrHandle<Node> back;
    rf_SerializeHandle(in, back);
    EXPECT_EQ(back->value, i);
  }
}

TEST(Persistent, StoringDoesNotDeleteAnObjectThatNoHandleHolds) {
  Node onStack(3);
  Node* pointer = &onStack;
  Bytes bytes;
  {
    auto archive = rzArchive::storingTo(bytes);
    rzPersistent::serializePointer(archive, pointer);
  }
  EXPECT_EQ(loadedGraph(bytes)->value, 3);
}
