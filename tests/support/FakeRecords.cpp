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
#include "FakeNorvexAPI.h"
#include "Timeline.h"

using CallText::Call;

// Nothing here travels.
#define EMPTY_TREE(Class)                                                                                              \
    bool Class::ClassToTree(TCTreeBranch&) {                                                                           \
        return true;                                                                                                   \
    }                                                                                                                  \
    bool Class::TreeToClass(TCTreeBranch&) {                                                                           \
        return true;                                                                                                   \
    }

TSTvMode::TSTvMode() : TSTvMode(ANTENNA_NONE, SERVICE_MODE_NONE) {}
TSTvMode::TSTvMode(EAntennaMode antennaMode, EServiceMode serviceMode)
    : m_antennaMode(antennaMode), m_serviceMode(serviceMode) {}
TSTvMode::TSTvMode(const TSTvMode& other) = default;
TSTvMode& TSTvMode::operator=(const TSTvMode& other) = default;
TSTvMode::~TSTvMode() = default;
EMPTY_TREE(TSTvMode)

TSRectInfo::TSRectInfo() : TSRectInfo(0, 0, 0, 0) {}
// NOLINTNEXTLINE(bugprone-easily-swappable-parameters): a rectangle's usual order.
TSRectInfo::TSRectInfo(int x, int y, int width, int height) : m_x(x), m_y(y), m_width(width), m_height(height) {}
TSRectInfo::TSRectInfo(const TSRectInfo& other) = default;
TSRectInfo& TSRectInfo::operator=(const TSRectInfo& other) = default;
TSRectInfo::~TSRectInfo() = default;
EMPTY_TREE(TSRectInfo)

TCCriteriaHelper::TCCriteriaHelper() {
    FakeNorvexAPI::Current().CountValue(1);
}
TCCriteriaHelper::~TCCriteriaHelper() {
    FakeNorvexAPI::Current().CountValue(-1);
    Timeline::Now().Call("~CriteriaHelper");
}
void TCCriteriaHelper::Where(int field, int value) {
    Timeline::Now().Call(Call("CriteriaHelper.Where", field, value));
}
void TCCriteriaHelper::WhereNot(int field, int value) {
    Timeline::Now().Call(Call("CriteriaHelper.WhereNot", field, value));
}
void TCCriteriaHelper::Fetch(int field) {
    Timeline::Now().Call(Call("CriteriaHelper.Fetch", field));
}
EMPTY_TREE(TCCriteriaHelper)

int TCNavigationModeHelper::GetNavigationCriteria(ENavigationMode mode, TCCriteriaHelper&,
                                                  ENavigationSortMode sortMode) {
    Timeline::Now().Call(Call("GetNavigationCriteria", mode, sortMode));
    return 1;
}

// Numbers of its own, so that what the console passes on is known to come from here.
int TCServiceUtility::AntennaModeToDigitalChannelType(EAntennaMode antennaMode) {
    Timeline::Now().Call(Call("AntennaModeToDigitalChannelType", antennaMode));
    return 40 + antennaMode;
}
EServiceMode TCServiceUtility::ServiceProfileToServiceMode(EServiceProfile profile) {
    Timeline::Now().Call(Call("ServiceProfileToServiceMode", profile));
    return static_cast<EServiceMode>(60 + profile);
}

namespace {

struct Field {
    bool hasValue;
    std::uint64_t serviceId;
    std::int32_t number;
    bool isServiceId;
};

using Table = std::map<int, Field>;

Table* TableOf(const FakeRecord& record) {
    if (!record.hasTable)
        return nullptr;
    auto* table = new Table;
    for (const auto& [tag, value] : record.fields) {
        (*table)[tag] = {value.has_value(), static_cast<std::uint64_t>(value.value_or(0)),
                         static_cast<std::int32_t>(value.value_or(0)), tag == SERVICE_FIELD_ID};
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
    const auto field = table->find(tag);
    return field == table->end() ? nullptr : reinterpret_cast<const TCServiceField*>(&field->second);
}

TCServiceData::TCServiceData() {
    m_pState = nullptr;
    FakeNorvexAPI::Current().CountValue(1);
}
TCServiceData::~TCServiceData() {
    delete static_cast<Table*>(m_pState);
    FakeNorvexAPI::Current().CountValue(-1);
    Timeline::Now().Call("~ServiceData");
}
const TCServiceFieldTable* TCServiceData::GetFieldTable() const {
    return reinterpret_cast<const TCServiceFieldTable*>(m_pState);
}
EMPTY_TREE(TCServiceData)

void FakeRecords::Fill(TCServiceData& data, const FakeRecord& record) {
    void*& state = StateOf<TCServiceData>::Pointer(data);
    delete static_cast<Table*>(state);
    state = TableOf(record);
}
bool FakeRecords::IsFresh(const TCServiceData& data) {
    return !data.GetFieldTable();
}

TCProgramData::TCProgramData() {
    m_pState = nullptr;
    FakeNorvexAPI::Current().CountValue(1);
}
TCProgramData::~TCProgramData() {
    delete static_cast<FakeProgram*>(m_pState);
    FakeNorvexAPI::Current().CountValue(-1);
    Timeline::Now().Call("~ProgramData");
}
bool TCProgramData::Title(unsigned short* buffer, unsigned int* length) const {
    constexpr int kUnits = 256;
    const auto zeros = std::count(buffer, buffer + kUnits, 0);
    Timeline::Now().Call(Call("ProgramData.Title", static_cast<int>(zeros), static_cast<int>(*length)));
    const auto* program = static_cast<const FakeProgram*>(m_pState);
    if (!program || !program->titleLength)
        return false;
    *length = *program->titleLength;
    std::fill(buffer, buffer + std::min(*length, 255U), u'T');
    return true;
}
EMPTY_TREE(TCProgramData)

void FakeRecords::Fill(TCProgramData& data, const FakeProgram& program) {
    void*& state = StateOf<TCProgramData>::Pointer(data);
    delete static_cast<FakeProgram*>(state);
    state = new FakeProgram(program);
}
bool FakeRecords::IsFresh(const TCProgramData& data) {
    return !StateOf<TCProgramData>::Pointer(data);
}

TCTPMSStatus::TCTPMSStatus() {
    FakeNorvexAPI::Current().CountValue(1);
    Timeline::Now().Call("TPMSStatus");
}
TCTPMSStatus::~TCTPMSStatus() {
    FakeNorvexAPI::Current().CountValue(-1);
    Timeline::Now().Call("~TPMSStatus");
}
EMPTY_TREE(TCTPMSStatus)
