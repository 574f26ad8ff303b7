#pragma once

#include <norvex/core/Export.h>

class TCMessageBuffer;
class TCTreeBranch;

// What travels to the middleware and back: an object that writes itself into a branch and reads
// itself from one.
//
// The order of the virtual operations is part of the library's binary interface.
class NORVEX_API TIMarshalable {
public:
    virtual ~TIMarshalable();
    // Stores the length in bytes of a value that is known by its length alone (a text). False: it
    // has none.
    virtual bool GetSizeOfMarshalled(unsigned long& size) = 0;
    // Writes this object into `branch`; false when it could not be written whole.
    virtual bool ClassToTree(TCTreeBranch& branch) = 0;
    // Reads this object from `branch`; false when a child that is there could not be read. Missing
    // children leave their fields as they were.
    virtual bool TreeToClass(TCTreeBranch& branch) = 0;
    // 0: a single object; 1: a container of objects.
    virtual int GetMarshalableStorageType() = 0;
    // Appends the object's tree to `buffer`; false when that failed.
    virtual bool Store(TCMessageBuffer* buffer) = 0;
    // Reads the object from the tree that `buffer` holds; false when that failed.
    virtual bool Load(TCMessageBuffer* buffer) = 0;
};

// Base of every marshalable class, with the library's own answers: no length of its own, an empty
// tree, storage type 0, and `Store` and `Load` by way of the tree.
class NORVEX_API TCMarshalable : public TIMarshalable {
public:
    TCMarshalable();
    TCMarshalable(const TCMarshalable& other);
    TCMarshalable& operator=(const TCMarshalable& other);
    ~TCMarshalable() override;

    bool GetSizeOfMarshalled(unsigned long& size) override;
    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;
    int GetMarshalableStorageType() override;
    bool Store(TCMessageBuffer* buffer) override;
    bool Load(TCMessageBuffer* buffer) override;

protected:
    // Private state of a class that the library itself derives; null in everybody else's. The base
    // neither copies nor frees what it points to.
    void* m_pState;
};
