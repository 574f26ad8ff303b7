#pragma once

#include <norvex/core/Export.h>

class TCTreeNode;

// Creates the tree nodes of a container's elements and fills elements from nodes. One creator
// serves one container.
class NORVEX_API TINodeCreator {
public:
    virtual ~TINodeCreator();
    // The kind of its elements. Elements of kinds 7 and 8 must be passed to `ReleaseElement` before
    // they are destroyed.
    virtual int GetKind() = 0;
    // Whether one node holds several elements, so that a reader has to ask the node for their
    // count.
    virtual bool HasElementCount() = 0;
    virtual void ReleaseElement(void* element) = 0;
    // A node for `count` elements of `elementSize` bytes at `element`; with a `tag` of -1 the
    // branch numbers it by its position. Null when the element could not be written. The creator
    // keeps the node until it is appended to a branch or the next one is created.
    virtual TCTreeNode* CreateNode(void* element, int elementSize, int tag, int count) = 0;
    // Fills `byteCount` bytes of elements of `elementSize` bytes each at `element` from `node`.
    virtual bool FillElement(void* element, int elementSize, int byteCount, TCTreeNode* node) = 0;
};

// For elements that are marshalable: a node is the element's own branch. Kind 1.
class NORVEX_API TCMarshalableNodeCreator : public TINodeCreator {
public:
    TCMarshalableNodeCreator();
    ~TCMarshalableNodeCreator() override;
    TCMarshalableNodeCreator(const TCMarshalableNodeCreator&) = delete;
    TCMarshalableNodeCreator& operator=(const TCMarshalableNodeCreator&) = delete;

    int GetKind() override;
    bool HasElementCount() override;
    void ReleaseElement(void* element) override;
    TCTreeNode* CreateNode(void* element, int elementSize, int tag, int count) override;
    bool FillElement(void* element, int elementSize, int byteCount, TCTreeNode* node) override;

private:
    void* m_pState;
};

// For plain values: a node is a leaf with their bytes. Kind 0.
class NORVEX_API DefaultNodeCreator : public TINodeCreator {
public:
    DefaultNodeCreator();
    ~DefaultNodeCreator() override;
    DefaultNodeCreator(const DefaultNodeCreator&) = delete;
    DefaultNodeCreator& operator=(const DefaultNodeCreator&) = delete;

    int GetKind() override;
    bool HasElementCount() override;
    void ReleaseElement(void* element) override;
    TCTreeNode* CreateNode(void* element, int elementSize, int tag, int count) override;
    bool FillElement(void* element, int elementSize, int byteCount, TCTreeNode* node) override;

private:
    void* m_pState;
};
