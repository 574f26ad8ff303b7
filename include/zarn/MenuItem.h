#pragma once

#include <string>

#include <norvex/core/Marshalable.h>

// One switch of a process's debug menu. A value: copies carry name, state and ID. A moved-from item
// may be assigned to and destroyed.
class TSMenuItem : public TCMarshalable {
public:
    TSMenuItem();
    TSMenuItem(const TSMenuItem& other);
    TSMenuItem& operator=(const TSMenuItem& other);
    // A growing list of items moves them.
    TSMenuItem(TSMenuItem&& other) noexcept;
    TSMenuItem& operator=(TSMenuItem&& other) noexcept;
    ~TSMenuItem() override;

    // The switch's label as its process names it, in the process's own encoding.
    void setName(const std::string& name);
    const std::string& getName() const;
    // On or off.
    void setState(bool state);
    bool getState() const;
    // The switch's number in its process.
    void setID(unsigned int id);
    unsigned int getID() const;

    bool ClassToTree(TCTreeBranch& branch) override;
    bool TreeToClass(TCTreeBranch& branch) override;

private:
    std::string m_name;
    bool m_state;
    unsigned int m_id;
};
