#pragma once

#include <norvex/core/Export.h>

class TCMessageBuffer;
class TCTreeBranch;

// An argument of a remote call: an object that writes itself into a branch and reads itself from
// one.
//
// The order of the virtual operations is part of the library's binary interface.
class NORVEX_API TIMarshalable {
public:
    virtual ~TIMarshalable();
    // Stores the length in bytes of a value for which only the length is sent (a text). False: it
    // has none.
    virtual bool GetSizeOfMarshalled(unsigned long& size) = 0;
    // Writes this object into `branch`; false when it could not be written completely.
    virtual bool ClassToTree(TCTreeBranch& branch) = 0;
    // Reads this object from `branch`; false when a child could not be read. Missing children leave
    // their fields unchanged.
    virtual bool TreeToClass(TCTreeBranch& branch) = 0;
    // 0: a single object; 1: a container of objects.
    virtual int GetMarshalableStorageType() = 0;
    // Appends the object's tree to `buffer`; false when that failed.
    virtual bool Store(TCMessageBuffer* buffer) = 0;
    // Reads the object from the tree that `buffer` holds; false when that failed.
    virtual bool Load(TCMessageBuffer* buffer) = 0;
};

// Base of every marshalable class, with defaults: no length, an empty tree, storage type 0, and
// `Store` and `Load` through the tree.
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
    // Private state of the library's own subclasses; null in all others. The base neither copies
    // nor frees it.
    void* m_pState;
};
