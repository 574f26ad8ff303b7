#include "FakeRecords.h"

#include <algorithm>
#include <cstdint>

#include <norvex/client/CriteriaHelper.h>
#include <norvex/client/NavigationModeHelper.h>
#include <norvex/client/ProgramData.h>
#include <norvex/client/RectInfo.h>
#include <norvex/client/ServiceData.h>
#include <norvex/client/ServiceUtility.h>
#include <norvex/client/TPMSStatus.h>
#include <norvex/client/TvMode.h>

#include "CallText.h"
#include "Timeline.h"

using CallText::call;

// Nothing here travels: the trees of the records stay empty.

TSTvMode::TSTvMode() : TSTvMode(ANTENNA_NONE, SERVICE_MODE_NONE) {}
TSTvMode::TSTvMode(EAntennaMode antennaMode, EServiceMode serviceMode)
    : m_antennaMode(antennaMode), m_serviceMode(serviceMode) {}
TSTvMode::TSTvMode(const TSTvMode& other) = default;
TSTvMode& TSTvMode::operator=(const TSTvMode& other) = default;
TSTvMode::~TSTvMode() = default;
bool TSTvMode::ClassToTree(TCTreeBranch&) {
    return true;
}
bool TSTvMode::TreeToClass(TCTreeBranch&) {
    return true;
}

TSRectInfo::TSRectInfo() : TSRectInfo(0, 0, 0, 0) {}
// NOLINTNEXTLINE(bugprone-easily-swappable-parameters): a rectangle's usual order.
TSRectInfo::TSRectInfo(int x, int y, int width, int height)
    : m_x(x), m_y(y), m_width(width), m_height(height) {}
TSRectInfo::TSRectInfo(const TSRectInfo& other) = default;
TSRectInfo& TSRectInfo::operator=(const TSRectInfo& other) = default;
TSRectInfo::~TSRectInfo() = default;
bool TSRectInfo::ClassToTree(TCTreeBranch&) {
    return true;
}
bool TSRectInfo::TreeToClass(TCTreeBranch&) {
    return true;
}

TCCriteriaHelper::TCCriteriaHelper() {
    FakeNorvexAPI::current().countValue(1);
}
TCCriteriaHelper::~TCCriteriaHelper() {
    FakeNorvexAPI::current().countValue(-1);
    Timeline::now().call("~CriteriaHelper");
}
void TCCriteriaHelper::Where(int field, int value) {
    Timeline::now().call(call("CriteriaHelper.Where", field, value));
}
void TCCriteriaHelper::WhereNot(int field, int value) {
    Timeline::now().call(call("CriteriaHelper.WhereNot", field, value));
}
void TCCriteriaHelper::Fetch(int field) {
    Timeline::now().call(call("CriteriaHelper.Fetch", field));
}
bool TCCriteriaHelper::ClassToTree(TCTreeBranch&) {
    return true;
}
bool TCCriteriaHelper::TreeToClass(TCTreeBranch&) {
    return true;
}

int TCNavigationModeHelper::GetNavigationCriteria(ENavigationMode mode, TCCriteriaHelper&,
                                                  ENavigationSortMode sortMode) {
    Timeline::now().call(call("GetNavigationCriteria", mode, sortMode));
    return 1;
}

// Numbers of its own, so that what the console passes on is known to come from here.
int TCServiceUtility::AntennaModeToDigitalChannelType(EAntennaMode antennaMode) {
    Timeline::now().call(call("AntennaModeToDigitalChannelType", antennaMode));
    return 40 + antennaMode;
}
EServiceMode TCServiceUtility::ServiceProfileToServiceMode(EServiceProfile profile) {
    Timeline::now().call(call("ServiceProfileToServiceMode", profile));
    return static_cast<EServiceMode>(60 + profile);
}

namespace {

struct Field {
    bool hasValue = false;
    std::uint64_t serviceId = 0;
    std::int32_t number = 0;
    bool isServiceId = false;
};

struct Table {
    std::map<int, Field> fields;
};

Table* TableOf(const FakeRecord& record) {
    if (!record.hasTable)
        return nullptr;
    auto* table = new Table;
    for (const auto& [tag, value] : record.fields) {
        Field field;
        field.hasValue = value.has_value();
        field.isServiceId = tag == SERVICE_FIELD_ID;
        field.serviceId = static_cast<std::uint64_t>(value.value_or(0));
        field.number = static_cast<std::int32_t>(value.value_or(0));
        table->fields[tag] = field;
    }
    return table;
}

// Gives the fake the records' one pointer of private state.
template <typename Record> class StateOf : public Record {
public:
    static void*& Pointer(Record& record) { return record.*&StateOf::m_pState; }
    static void* Pointer(const Record& record) { return record.*&StateOf::m_pState; }
};

} // namespace

const void* TCServiceField::GetData() const {
    const auto* field = reinterpret_cast<const Field*>(this);
    if (!field->hasValue)
        return nullptr;
    if (field->isServiceId)
        return &field->serviceId;
    return &field->number;
}

const TCServiceField* TCServiceFieldTable::Find(int tag) const {
    const auto* table = reinterpret_cast<const Table*>(this);
    const auto field = table->fields.find(tag);
    if (field == table->fields.end())
        return nullptr;
    return reinterpret_cast<const TCServiceField*>(&field->second);
}

TCServiceData::TCServiceData() {
    m_pState = nullptr;
    FakeNorvexAPI::current().countValue(1);
}
TCServiceData::~TCServiceData() {
    delete static_cast<Table*>(m_pState);
    FakeNorvexAPI::current().countValue(-1);
    Timeline::now().call("~ServiceData");
}
const TCServiceFieldTable* TCServiceData::GetFieldTable() const {
    return reinterpret_cast<const TCServiceFieldTable*>(m_pState);
}
bool TCServiceData::ClassToTree(TCTreeBranch&) {
    return true;
}
bool TCServiceData::TreeToClass(TCTreeBranch&) {
    return true;
}

void FakeRecords::fill(TCServiceData& data, const FakeRecord& record) {
    void*& state = StateOf<TCServiceData>::Pointer(data);
    delete static_cast<Table*>(state);
    state = TableOf(record);
}
bool FakeRecords::isFresh(const TCServiceData& data) {
    return !data.GetFieldTable();
}

TCProgramData::TCProgramData() {
    m_pState = nullptr;
    FakeNorvexAPI::current().countValue(1);
}
TCProgramData::~TCProgramData() {
    delete static_cast<FakeNorvexAPI::Program*>(m_pState);
    FakeNorvexAPI::current().countValue(-1);
    Timeline::now().call("~ProgramData");
}
bool TCProgramData::Title(unsigned short* buffer, unsigned int* length) const {
    constexpr int kUnits = 256;
    const auto zeros = std::count(buffer, buffer + kUnits, 0);
    Timeline::now().call(
        call("ProgramData.Title", static_cast<int>(zeros), static_cast<int>(*length)));
    const auto* program = static_cast<const FakeNorvexAPI::Program*>(m_pState);
    if (!program || !program->hasTitle)
        return false;
    *length = program->titleLength;
    std::fill(buffer, buffer + std::min(program->titleLength, 255U), u'T');
    return true;
}
bool TCProgramData::ClassToTree(TCTreeBranch&) {
    return true;
}
bool TCProgramData::TreeToClass(TCTreeBranch&) {
    return true;
}

void FakeRecords::fill(TCProgramData& data, const FakeNorvexAPI::Program& program) {
    void*& state = StateOf<TCProgramData>::Pointer(data);
    delete static_cast<FakeNorvexAPI::Program*>(state);
    state = new FakeNorvexAPI::Program(program);
}
bool FakeRecords::isFresh(const TCProgramData& data) {
    return !StateOf<TCProgramData>::Pointer(data);
}

TCTPMSStatus::TCTPMSStatus() {
    FakeNorvexAPI::current().countValue(1);
    Timeline::now().call("TPMSStatus");
}
TCTPMSStatus::~TCTPMSStatus() {
    FakeNorvexAPI::current().countValue(-1);
    Timeline::now().call("~TPMSStatus");
}
bool TCTPMSStatus::ClassToTree(TCTreeBranch&) {
    return true;
}
bool TCTPMSStatus::TreeToClass(TCTreeBranch&) {
    return true;
}
