#include "LineUpText.h"

#include <cinttypes>
#include <utility>
#include <vector>

#include <base/Number.h>
#include <base/Printed.h>
#include <norvex/client/CriteriaHelper.h>
#include <norvex/client/ServiceId.h>

#include "LineUpTokens.h"

namespace sim {

namespace {

constexpr std::int32_t kMaxNumber = 65535; // majors and minors have 16 bits
constexpr std::int32_t kMaxProfile = 32767;
constexpr std::size_t kMaxText = 255; // bytes of a name or a title

std::string ToTime(std::int32_t second) {
    return Printed("%02d:%02d", second / 3600 % 24, second / 60 % 60);
}

// One pass over a text.
class Reader {
public:
    explicit Reader(LineUpSink& sink) : m_sink(sink) {}

    // Empty, or what was expected.
    std::string ReadLine(std::string_view line) {
        std::string error;
        if (!SplitLine(line, m_words, error) || m_words.empty())
            return error;
        m_next = 0;
        const std::string keyword = Take().text;
        if (keyword == "transponder")
            return ReadTransponder();
        if (keyword == "streamed")
            return ReadStreamed();
        if (keyword == "service")
            return ReadService();
        if (keyword == "programme")
            return ReadProgramme();
        return Expect("transponder, streamed, service or programme", 0);
    }

private:
    const LineUpToken& Take() {
        static const LineUpToken kNone;
        return m_next < m_words.size() ? m_words[m_next++] : kNone;
    }
    bool IsAtEnd() const { return m_next == m_words.size(); }

    // "expected what, found the token at that place".
    std::string Expect(const std::string& what, std::size_t place) const {
        std::string found = "the end of the line";
        if (place < m_words.size())
            found = Quote(m_words[place].text);
        return "expected " + what + ", found " + found;
    }
    std::string ExpectEnd() const { return IsAtEnd() ? "" : Expect("the end of the line", m_next); }

    std::string ReadTransponder() {
        const bool two = m_words.size() > 2;
        const auto transponder = two ? ParseTransponder(m_words[1].text + "/" + m_words[2].text) : std::nullopt;
        if (!transponder) {
            const auto antenna = m_words.size() > 1 ? ParseTransponder(m_words[1].text) : std::nullopt;
            return antenna && antenna->frequency == 0 ? Expect("a frequency in kHz above 0", 2)
                                                      : Expect("air, cable or satellite", 1);
        }
        m_next = 3;
        Begin(*transponder);
        return ExpectEnd();
    }

    std::string ReadStreamed() {
        const auto antenna = ParseTransponder(Take().text);
        if (!antenna || antenna->frequency != 0)
            return Expect("air, cable or satellite", 1);
        Begin(*antenna);
        return ExpectEnd();
    }

    void Begin(const Transponder& transponder) {
        m_hasHeading = true;
        m_hasService = false;
        m_heading = transponder;
    }

    std::string ReadService() {
        m_hasService = false;
        if (!m_hasHeading)
            return "expected a transponder or streamed line before the first service";
        ServiceRecord service;
        service.antenna = m_heading.antenna;
        service.frequency = m_heading.frequency;
        const std::string id = Take().text;
        if (!id.starts_with("0x") || !ParseNumber(id, service.id) || service.id == INVALID_SERVICE_ID)
            return Expect("a service id from 0x0 to 0xfffffffffffffffe", 1);
        if (!ParseNumbers(Take().text, service))
            return Expect("a channel number, MAJOR or MAJOR-MINOR, each 0 to 65535", 2);
        const LineUpToken& name = Take();
        if (!name.quoted || name.text.size() > kMaxText)
            return Expect("a name in \"\" of at most 255 bytes", 3);
        service.name = name.text;
        while (!IsAtEnd()) {
            if (!ReadProperty(Take(), service))
                return Expect("hidden, unlisted, captions, barker or profile=0 to 32767", m_next - 1);
        }
        m_hasService = true;
        m_service = service.id;
        m_firstStart = m_end = 0;
        m_hasProgramme = false;
        return m_sink.AddService(service);
    }

    static bool ParseNumbers(const std::string& token, ServiceRecord& service) {
        const std::size_t dash = token.find('-', 1);
        const auto inRange = [](std::int32_t number) { return number >= 0 && number <= kMaxNumber; };
        if (!ParseNumber(token.substr(0, dash), service.major) || !inRange(service.major))
            return false;
        return dash == std::string::npos ||
               (ParseNumber(token.substr(dash + 1), service.minor) && inRange(service.minor));
    }

    static bool ReadProperty(const LineUpToken& token, ServiceRecord& service) {
        const std::string profile = "profile=";
        if (token.quoted)
            return false;
        if (token.text == "hidden")
            service.hidden = true;
        else if (token.text == "unlisted")
            service.listed = false;
        else if (token.text == "captions")
            service.captions = true;
        else if (token.text == "barker")
            service.barker = true;
        else
            return token.text.starts_with(profile) && ParseNumber(token.text.substr(profile.size()), service.profile) &&
                   service.profile >= 0 && service.profile <= kMaxProfile;
        return true;
    }

    static bool ParseTime(const std::string& token, std::int32_t& second) {
        int hours = 0;
        int minutes = 0;
        if (token.size() != 5 || token[2] != ':' || !ParseNumber(token.substr(0, 2), hours) ||
            !ParseNumber(token.substr(3), minutes) || hours < 0 || hours > 23 || minutes < 0 || minutes > 59)
            return false;
        second = hours * 3600 + minutes * 60;
        return true;
    }

    // Programmes of a service are in order and do not overlap, not even across midnight: so one
    // look-up finds the present one.
    std::string ReadProgramme() {
        if (!m_hasService)
            return "expected a service line before its programmes";
        ProgrammeRecord programme;
        std::int32_t minutes = 0;
        if (!ParseTime(Take().text, programme.start))
            return Expect("a time of day, 00:00 to 23:59", 1);
        if (!ParseNumber(Take().text, minutes) || minutes < 1 || minutes > kSecondsOfDay / 60)
            return Expect("a duration of 1 to 1440 minutes", 2);
        programme.duration = minutes * 60;
        if (!IsAtEnd()) {
            const LineUpToken& title = Take();
            if (!title.quoted || title.text.size() > kMaxText)
                return Expect("a title in \"\" of at most 255 bytes", 3);
            programme.title = title.text;
        }
        if (!IsAtEnd())
            return ExpectEnd();
        if (m_hasProgramme && programme.start < m_end)
            return Expect("a start at or after " + ToTime(m_end) + ", when the previous programme ends", 1);
        if (!m_hasProgramme)
            m_firstStart = programme.start;
        m_hasProgramme = true;
        m_end = programme.start + programme.duration;
        if (m_end - kSecondsOfDay > m_firstStart)
            return Expect("an end before " + ToTime(m_firstStart) + " of the next day, when the first programme begins",
                          2);
        return m_sink.AddProgramme(m_service, programme);
    }

    LineUpSink& m_sink;
    std::vector<LineUpToken> m_words; // of the line
    std::size_t m_next = 0;
    bool m_hasHeading = false;
    Transponder m_heading; // frequency 0: streamed
    bool m_hasService = false;
    std::uint64_t m_service = 0; // of the following programmes
    bool m_hasProgramme = false;
    std::int32_t m_firstStart = 0;
    std::int32_t m_end = 0; // of the previous programme
};

} // namespace

std::int32_t ServiceRecord::GetChannelType() const {
    return IsStreamed() ? CHANNEL_TYPE_VIRTUAL : antenna + 1;
}

bool ReadLineUp(std::string_view text, const std::string& name, LineUpSink& sink, std::string& error) {
    Reader reader(sink);
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::size_t size = text.find('\n');
        const std::string expected = reader.ReadLine(text.substr(0, size));
        if (!expected.empty()) {
            error = name;
            error += ":" + std::to_string(number) + ": " + expected;
            return false;
        }
        text.remove_prefix(size == std::string_view::npos ? text.size() : size + 1);
    }
    return true;
}

void LineUpWriter::Add(const ServiceRecord& service) {
    std::string heading = service.IsStreamed() ? "streamed " : "transponder ";
    heading += ToAntennaName(service.antenna);
    if (!service.IsStreamed())
        heading += " " + std::to_string(service.frequency);
    if (heading != m_heading)
        m_text += heading + "\n";
    m_heading = std::move(heading);

    m_text += Printed("  service 0x%" PRIx64 " %d", service.id, service.major);
    if (service.minor != 0)
        m_text += "-" + std::to_string(service.minor);
    m_text += " " + Quote(service.name);
    if (service.profile != 0)
        m_text += " profile=" + std::to_string(service.profile);
    if (!service.listed)
        m_text += " unlisted";
    if (service.hidden)
        m_text += " hidden";
    if (service.captions)
        m_text += " captions";
    if (service.barker)
        m_text += " barker";
    m_text += "\n";
}

void LineUpWriter::Add(const ProgrammeRecord& programme) {
    m_text += "    programme " + ToTime(programme.start) + " " + std::to_string(programme.duration / 60);
    if (programme.title)
        m_text += " " + Quote(*programme.title);
    m_text += "\n";
}

} // namespace sim
