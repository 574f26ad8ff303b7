#pragma once

#include <cstddef>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include <norvex/core/Marshalable.h>
#include <norvex/core/NodeCreator.h>
#include <norvex/core/TreeBranch.h>
#include <norvex/core/TreeNode.h>

// Lets a whole container of elements travel, one child of the branch per element, or all elements
// as one block of bytes where they are plain values. Created on the stack around the caller's
// container for one call.
//
// Container needs begin, end, size, clear and push_back; Element a default constructor, and copies
// or moves.
template <class Container, class Element> class TCMarshalableOneDimensionContainer : public TCMarshalable {
public:
    // The container is not owned and must outlive the wrapper. `nodeCreator` must not be null and
    // is owned by the wrapper. With `clearOnDestroy` the wrapper's destructor empties the
    // container.
    TCMarshalableOneDimensionContainer(Container* container, TINodeCreator* nodeCreator, bool clearOnDestroy)
        : m_bClearOnDestroy(clearOnDestroy), m_pContainer(container), m_pNodeCreator(nodeCreator),
          m_bPlainElements(nodeCreator->GetKind() == kKindOfPlainValues && std::is_trivially_copyable_v<Element>) {}

    ~TCMarshalableOneDimensionContainer() override {
        if (m_bClearOnDestroy && m_pContainer != nullptr)
            Clear();
        delete m_pNodeCreator;
    }

    TCMarshalableOneDimensionContainer(const TCMarshalableOneDimensionContainer&) = delete;
    TCMarshalableOneDimensionContainer& operator=(const TCMarshalableOneDimensionContainer&) = delete;

    // Always true; an element for which the creator makes no node is left out silently.
    bool ClassToTree(TCTreeBranch& branch) override {
        if (m_pContainer == nullptr)
            return true;
        if (m_bPlainElements) {
            WriteBlock(branch);
            return true;
        }
        for (Element& element : *m_pContainer) {
            if (TCTreeNode* node = m_pNodeCreator->CreateNode(&element, kElementSize, -1, 1))
                branch.AppendChild(node);
        }
        return true;
    }

    // Replaces the container's content. Always true; every child yields one element, even one that
    // could not be filled, so that the count matches the sender's.
    bool TreeToClass(TCTreeBranch& branch) override {
        if (m_pContainer == nullptr)
            return true;
        Clear();
        if (m_bPlainElements) {
            ReadBlock(branch);
            return true;
        }
        MakeRoom(branch);
        const bool counted = m_pNodeCreator->HasElementCount();
        for (TCTreeNode* child = branch.GetFirstChild(); child != nullptr; child = branch.GetNextChild()) {
            const int count = counted ? child->GetElementCount(kElementSize) : 1;
            Element element{};
            m_pNodeCreator->FillElement(&element, kElementSize, count * kElementSize, child);
            m_pContainer->push_back(std::move(element));
        }
        return true;
    }

    int GetMarshalableStorageType() override { return 1; }

private:
    static constexpr int kElementSize = sizeof(Element);
    static constexpr int kKindOfPlainValues = 0;
    // Elements of these kinds hold something that only their creator can release.
    static constexpr int kFirstKindToRelease = 7;
    static constexpr int kSecondKindToRelease = 8;

    void Clear() {
        const int kind = m_pNodeCreator->GetKind();
        if (kind == kFirstKindToRelease || kind == kSecondKindToRelease) {
            for (Element& element : *m_pContainer)
                m_pNodeCreator->ReleaseElement(&element);
        }
        m_pContainer->clear();
    }

    // Counting the children first costs less than a long list that grows step by step.
    void MakeRoom(TCTreeBranch& branch) {
        if constexpr (requires { m_pContainer->reserve(std::size_t{}); }) {
            std::size_t count = 0;
            for (TCTreeNode* child = branch.GetFirstChild(); child != nullptr; child = branch.GetNextChild())
                ++count;
            m_pContainer->reserve(count);
        }
    }

    void WriteBlock(TCTreeBranch& branch) {
        const int size = static_cast<int>(m_pContainer->size()) * kElementSize;
        if (size <= 0)
            return;
        std::vector<char> block;
        block.reserve(static_cast<std::size_t>(size));
        for (const Element& element : *m_pContainer) {
            const char* bytes = reinterpret_cast<const char*>(&element);
            block.insert(block.end(), bytes, bytes + kElementSize);
        }
        branch.AppendChild(new TCTreeLeafVar(0, size, block.data()));
    }

    void ReadBlock(TCTreeBranch& branch) {
        TCTreeNode* block = branch.GetFirstChild();
        if (block == nullptr)
            return;
        const int count = block->GetSize() / kElementSize;
        if (count < 1)
            return;
        const auto elements = std::make_unique<Element[]>(static_cast<std::size_t>(count));
        block->CopyTo(elements.get(), count * kElementSize);
        for (int i = 0; i < count; ++i)
            m_pContainer->push_back(elements[static_cast<std::size_t>(i)]);
    }

    bool m_bClearOnDestroy;
    Container* m_pContainer;
    TINodeCreator* m_pNodeCreator;
    // Bulk mode: the elements travel as one block of bytes.
    bool m_bPlainElements;
};
