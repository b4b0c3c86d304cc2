#include "tests/style/css_rule_table.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <stdexcept>
#include <string>

namespace testing_support {

namespace {

    constexpr std::int32_t kUnknown = -2;
    constexpr std::int32_t kDead = -1;

    struct NamedPattern {
        std::string_view name;
        std::string_view pattern;
    };

    // Letters stand for both cases, single capitals in braces for a letter that may be escaped.
    const NamedPattern kNamedPatterns[] = {
        {"h", R"([0-9a-f])"},
        {"nonascii", R"([\xA0-\xFF])"},
        {"nl", R"(\n|\r\n|\r|\f)"},
        {"s", R"([ \t\r\n\f]+)"},
        {"w", R"({s}?)"},
        {"unicode", R"(\\{h}({h}({h}({h}({h}{h}?)?)?)?)?(\r\n|[ \t\r\n\f])?)"},
        {"escape", R"({unicode}|\\[^\r\n\f0-9a-f])"},
        {"nmstart", R"([_a-z]|{nonascii}|{escape})"},
        {"nmchar", R"([_a-z0-9-]|{nonascii}|{escape})"},
        {"ident", R"(-?{nmstart}{nmchar}*)"},
        {"name", R"({nmchar}+)"},
        {"num", R"([0-9]+|[0-9]*\.[0-9]+)"},
        {"inside1", R"(([^\n\r\f\\"]|\\{nl}|{escape})*)"},
        {"inside2", R"(([^\n\r\f\\']|\\{nl}|{escape})*)"},
        {"string", R"("{inside1}"|'{inside2}')"},
        {"badstring", R"("{inside1}\\?|'{inside2}\\?)"},
        {"url", R"(([!#$%&*-~]|{nonascii}|{escape})*)"},
        {"comment", R"(\/\*[^*]*\*+([^\/*][^*]*\*+)*\/)"},
        {"of_type", R"({O}{F}-{T}{Y}{P}{E})"},
        {"child", R"({C}{H}{I}{L}{D})"},
        {"first", R"({F}{I}{R}{S}{T})"},
        {"last", R"({L}{A}{S}{T})"},
        {"nth", R"({N}{T}{H})"},
        {"only", R"({O}{N}{L}{Y})"},
    };

    struct Rule {
        std::string_view pattern;
        std::int32_t kind;
    };

    const Rule kRules[] = {
        {R"({s})", 1000},
        {R"({comment})", 0},
        {R"(\/\*[^*]*(\*+[^\/*][^*]*)*\**)", 0},
        {R"(<!--)", 1001},
        {R"(-->)", 1002},
        {R"(~=)", 1003},
        {R"(\|=)", 1004},
        {R"(^=)", 1005},
        {R"($=)", 1006},
        {R"(\*=)", 1007},
        {R"({string})", 1008},
        {R"({badstring})", 1009},
        {R"({ident})", 1010},
        {R"(#{name})", 1011},
        {R"(@{I}{M}{P}{O}{R}{T})", 1012},
        {R"(@{P}{A}{G}{E})", 1013},
        {R"(@{M}{E}{D}{I}{A})", 1014},
        {R"(@charset )", 1015},
        {R"(@font-face)", 1016},
        {R"(@{ident})", 1017},
        {R"(!({w}|{comment})*{I}{M}{P}{O}{R}{T}{A}{N}{T})", 1018},
        {R"({num}em)", 1019},
        {R"({num}ex)", 1020},
        {R"({num}px)", 1021},
        {R"({num}cm)", 1021},
        {R"({num}mm)", 1021},
        {R"({num}in)", 1021},
        {R"({num}pt)", 1021},
        {R"({num}pc)", 1021},
        {R"({num}deg)", 1022},
        {R"({num}rad)", 1022},
        {R"({num}grad)", 1022},
        {R"({num}ms)", 1023},
        {R"({num}s)", 1023},
        {R"({num}hz)", 1024},
        {R"({num}khz)", 1024},
        {R"({num}{ident})", 1025},
        {R"({num}%)", 1026},
        {R"({num})", 1027},
        {R"(url\({w}{string}{w}\))", 1028},
        {R"(url\({w}{url}{w}\))", 1028},
        {R"(url\({w}({url}{w}|{string}{w}|{badstring}))", 1029},
        {R"({ident}\()", 1030},
        {R"(\|\|)", 1031},
        {R"(:{N}{O}{T}\()", 1032},
        {R"(:{L}{A}{N}{G}\()", 1033},
        {R"(:{nth}-{child}\()", 1034},
        {R"(:{nth}-{last}-{child}\()", 1035},
        {R"(:{nth}-{of_type}\()", 1036},
        {R"(:{nth}-{last}-{of_type}\()", 1037},
        {R"(:{L}{I}{N}{K})", 1038},
        {R"(:{V}{I}{S}{I}{T}{E}{D})", 1039},
        {R"(:{A}{C}{T}{I}{V}{E})", 1040},
        {R"(:{H}{O}{V}{E}{R})", 1041},
        {R"(:{F}{O}{C}{U}{S})", 1042},
        {R"(:{first}-{child})", 1043},
        {R"(:{last}-{child})", 1044},
        {R"(:{first}-{of_type})", 1045},
        {R"(:{last}-{of_type})", 1046},
        {R"(:{only}-{child})", 1047},
        {R"(:{only}-{of_type})", 1048},
        {R"(:{R}{O}{O}{T})", 1049},
        {R"(:{E}{M}{P}{T}{Y})", 1050},
        {R"(:{T}{A}{R}{G}{E}{T})", 1051},
        {R"(:{E}{N}{A}{B}{L}{E}{D})", 1052},
        {R"(:{D}{I}{S}{A}{B}{L}{E}{D})", 1053},
        {R"(:{C}{H}{E}{C}{K}{E}{D})", 1054},
        {R"(::?{first}-{L}{E}{T}{T}{E}{R})", 1055},
        {R"(::?{first}-{L}{I}{N}{E})", 1056},
        {R"(::?{B}{E}{F}{O}{R}{E})", 1057},
        {R"(::?{A}{F}{T}{E}{R})", 1058},
        {R"(::{S}{E}{L}{E}{C}{T}{I}{O}{N})", 1059},
    };

    // The digits of a code in the middle of a pattern.
    std::string codeDigits(int code)
    {
        constexpr std::string_view digits = "0123456789abcdef";
        return {digits[static_cast<std::size_t>(code / 16)],
            digits[static_cast<std::size_t>(code % 16)]};
    }

    std::string letterPattern(char upper)
    {
        const char lower = static_cast<char>(std::tolower(upper));
        std::string pattern = std::string(1, lower) + R"(|\\0?0?0?0?()" + codeDigits(upper) + '|'
            + codeDigits(lower) + R"()(\r\n|[ \t\r\n\f])?)";
        if (lower > 'f')
            pattern += std::string(R"(|\\)") + lower;
        return pattern;
    }

    // One byte of a pattern, read behind a backslash where one stands.
    std::uint8_t takeByte(std::string_view& pattern)
    {
        char byte = pattern[0];
        pattern.remove_prefix(1);
        if (byte != '\\')
            return static_cast<std::uint8_t>(byte);
        byte = pattern[0];
        pattern.remove_prefix(1);
        switch (byte) {
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 'f':
            return '\f';
        case 't':
            return '\t';
        case 'x': {
            const std::string digits(pattern.substr(0, 2));
            pattern.remove_prefix(2);
            return static_cast<std::uint8_t>(std::strtoul(digits.c_str(), nullptr, 16));
        }
        }
        return static_cast<std::uint8_t>(byte);
    }

    void addBothCases(std::bitset<256>& bytes, int byte)
    {
        bytes.set(static_cast<std::size_t>(byte));
        if (byte < 0x80 && std::isalpha(byte) != 0)
            bytes.set(static_cast<std::size_t>(byte ^ 0x20));
    }

    // What stands between brackets.
    std::bitset<256> takeClass(std::string_view& pattern)
    {
        std::bitset<256> bytes;
        const bool isInverted = pattern[0] == '^';
        if (isInverted)
            pattern.remove_prefix(1);
        while (pattern[0] != ']') {
            const int from = takeByte(pattern);
            int to = from;
            if (pattern[0] == '-' && pattern[1] != ']') {
                pattern.remove_prefix(1);
                to = takeByte(pattern);
            }
            for (int byte = from; byte <= to; ++byte)
                addBothCases(bytes, byte);
        }
        pattern.remove_prefix(1);
        return isInverted ? ~bytes : bytes;
    }

} // namespace

CssRuleTable::CssRuleTable()
{
    const std::int32_t start = addState();
    std::int32_t rule = 0;
    for (const Rule& row : kRules) {
        std::string_view pattern = row.pattern;
        const Piece piece = parseChoice(pattern);
        if (!pattern.empty())
            throw std::logic_error("a pattern has too many parentheses");
        states_[static_cast<std::size_t>(start)].jumps.push_back(piece.first);
        states_[static_cast<std::size_t>(piece.last)].rule = rule++;
    }
    start_ = groupOf({start});
}

CssRuleTable::Match CssRuleTable::match(std::string_view text)
{
    // The last rule of all: any one byte is a token for itself.
    Match best{static_cast<std::uint8_t>(text[0]), 1};
    std::int32_t group = start_;
    for (std::size_t i = 0; i < text.size(); ++i) {
        group = nextGroup(group, static_cast<std::uint8_t>(text[i]));
        if (group == kDead)
            break;
        const std::int32_t rule = groups_[static_cast<std::size_t>(group)].rule;
        if (rule >= 0)
            best = {kRules[rule].kind, i + 1};
    }
    return best;
}

std::int32_t CssRuleTable::addState()
{
    states_.emplace_back();
    return static_cast<std::int32_t>(states_.size()) - 1;
}

CssRuleTable::Piece CssRuleTable::parseChoice(std::string_view& pattern)
{
    const Piece choice = {addState(), addState()};
    for (;;) {
        const Piece branch = parseSequence(pattern);
        states_[static_cast<std::size_t>(choice.first)].jumps.push_back(branch.first);
        states_[static_cast<std::size_t>(branch.last)].jumps.push_back(choice.last);
        if (pattern.empty() || pattern[0] != '|')
            return choice;
        pattern.remove_prefix(1);
    }
}

CssRuleTable::Piece CssRuleTable::parseSequence(std::string_view& pattern)
{
    Piece sequence = emptyPiece();
    while (!pattern.empty() && pattern[0] != '|' && pattern[0] != ')') {
        const Piece next = parseRepeated(pattern);
        states_[static_cast<std::size_t>(sequence.last)].jumps.push_back(next.first);
        sequence.last = next.last;
    }
    return sequence;
}

CssRuleTable::Piece CssRuleTable::parseRepeated(std::string_view& pattern)
{
    const Piece atom = parseAtom(pattern);
    if (pattern.empty() || (pattern[0] != '*' && pattern[0] != '+' && pattern[0] != '?'))
        return atom;
    const char sign = pattern[0];
    pattern.remove_prefix(1);
    const Piece repeated = {addState(), addState()};
    const auto jump = [this](std::int32_t from, std::int32_t to) {
        states_[static_cast<std::size_t>(from)].jumps.push_back(to);
    };
    jump(repeated.first, atom.first);
    jump(atom.last, repeated.last);
    if (sign != '?')
        jump(atom.last, atom.first);
    if (sign != '+')
        jump(repeated.first, repeated.last);
    return repeated;
}

CssRuleTable::Piece CssRuleTable::parseAtom(std::string_view& pattern)
{
    if (pattern[0] == '(') {
        pattern.remove_prefix(1);
        const Piece choice = parseChoice(pattern);
        pattern.remove_prefix(1);
        return choice;
    }
    if (pattern[0] == '{') {
        const std::size_t end = pattern.find('}');
        const Piece named = parseName(pattern.substr(1, end - 1));
        pattern.remove_prefix(end + 1);
        return named;
    }
    if (pattern[0] == '[') {
        pattern.remove_prefix(1);
        return bytePiece(takeClass(pattern));
    }
    ByteSet bytes;
    addBothCases(bytes, takeByte(pattern));
    return bytePiece(bytes);
}

CssRuleTable::Piece CssRuleTable::parseName(std::string_view name)
{
    if (name.size() == 1 && std::isupper(name[0]) != 0) {
        const std::string letter = letterPattern(name[0]);
        std::string_view rest = letter;
        return parseChoice(rest);
    }
    for (const NamedPattern& row : kNamedPatterns) {
        if (row.name == name) {
            std::string_view rest = row.pattern;
            return parseChoice(rest);
        }
    }
    throw std::logic_error("a pattern has an unknown name");
}

CssRuleTable::Piece CssRuleTable::bytePiece(const ByteSet& bytes)
{
    const Piece piece = {addState(), addState()};
    State& first = states_[static_cast<std::size_t>(piece.first)];
    first.bytes = bytes;
    first.next = piece.last;
    return piece;
}

CssRuleTable::Piece CssRuleTable::emptyPiece()
{
    const std::int32_t state = addState();
    return {state, state};
}

std::int32_t CssRuleTable::groupOf(std::vector<std::int32_t> states)
{
    // Everything that is reached without a byte.
    std::vector<bool> isIn(states_.size());
    for (const std::int32_t state : states)
        isIn[static_cast<std::size_t>(state)] = true;
    for (std::size_t i = 0; i < states.size(); ++i) {
        for (const std::int32_t next : states_[static_cast<std::size_t>(states[i])].jumps) {
            if (!isIn[static_cast<std::size_t>(next)]) {
                isIn[static_cast<std::size_t>(next)] = true;
                states.push_back(next);
            }
        }
    }
    // What only leads on without a byte tells groups apart for no reason.
    std::erase_if(states, [this](std::int32_t number) {
        const State& state = states_[static_cast<std::size_t>(number)];
        return state.next < 0 && state.rule < 0;
    });
    std::sort(states.begin(), states.end());
    const auto [place, isNew]
        = known_.try_emplace(states, static_cast<std::int32_t>(groups_.size()));
    if (!isNew)
        return place->second;
    Group group;
    group.next.fill(kUnknown);
    group.rule = -1;
    for (const std::int32_t state : states) {
        const std::int32_t rule = states_[static_cast<std::size_t>(state)].rule;
        if (rule >= 0 && (group.rule < 0 || rule < group.rule))
            group.rule = rule;
    }
    group.states = std::move(states);
    groups_.push_back(std::move(group));
    return place->second;
}

std::int32_t CssRuleTable::nextGroup(std::int32_t group, std::uint8_t byte)
{
    const std::int32_t known = groups_[static_cast<std::size_t>(group)].next[byte];
    if (known != kUnknown)
        return known;
    std::vector<std::int32_t> reached;
    for (const std::int32_t number : groups_[static_cast<std::size_t>(group)].states) {
        const State& state = states_[static_cast<std::size_t>(number)];
        if (state.next >= 0 && state.bytes.test(byte))
            reached.push_back(state.next);
    }
    const std::int32_t next = reached.empty() ? kDead : groupOf(std::move(reached));
    groups_[static_cast<std::size_t>(group)].next[byte] = next;
    return next;
}

} // namespace testing_support
