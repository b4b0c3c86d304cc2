#pragma once

#include "support/html_names.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace testing_support {

/// A token of a random document.
struct NaiveToken {
    enum Kind { Character, StartTag, EndTag };

    Kind kind;
    std::uint32_t element; ///< of a tag
    char character; ///< of a character
    std::string attribute; ///< of a start tag, as it stands in the markup
    std::string attributeText; ///< the same as an outline shows it
    /// Which attributes count as the same: 0 for none, a number below 0 for one that is the same as
    /// no other.
    int attributeClass;
    bool isFostered = false;
};

/// The rules of the tree builder for a few elements, told in arrays and walks: no rule here knows
/// anything but the order of the entries. It begins with an open body.
class NaiveTreeBuilder {
public:
    NaiveTreeBuilder();

    void process(const NaiveToken& token);

    /// Makes the characters that are left a text node.
    void finish() { flush(); }

    /// As outlineOf shows a tree.
    std::string outline() const;

    std::uint32_t nodeCount = 0;
    std::uint32_t nextId = 1;
    bool parseError = false;

private:
    struct Node {
        std::uint32_t element = 0;
        std::string text;
        std::string attributeText;
        int attributeClass = 0;
        Node* parent = nullptr;
        std::vector<Node*> children;
    };

    enum class Mode { Body, Table, TableText, TableBody, Row, Cell, Caption };
    enum Answer { Used, Ignored, Again };
    using Nodes = std::vector<Node*>;
    static constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

    static bool isIn(std::uint32_t element, std::initializer_list<std::uint32_t> set);
    static bool isFosterTarget(const Node& node);
    static std::size_t indexOf(const Nodes& nodes, const Node* node);
    static void detach(Node* node);
    static void append(Node* parent, Node* node);
    static void insertBefore(Node* reference, Node* node);

    Answer dispatch(const NaiveToken& token);
    Answer inBody(const NaiveToken& token);
    Answer bodyStartTag(const NaiveToken& token);
    Answer bodyEndTag(const NaiveToken& token);
    Answer anyOtherEndTag(const NaiveToken& token);
    Answer adoptionAgency(const NaiveToken& token);
    void repair(Node* formatting, Node* furthestBlock, const Nodes& snapshot);
    Answer inTable(const NaiveToken& token);
    Answer inTableText(const NaiveToken& token);
    Answer inTableBody(const NaiveToken& token);
    Answer inRow(const NaiveToken& token);
    Answer inCell(const NaiveToken& token);
    Answer inCaption(const NaiveToken& token);
    Answer closeCell();
    Answer fail();

    Node* make(std::uint32_t element);
    Node* insert(const NaiveToken& token, bool flushFirst = true);
    void insertMarker() { list_.push_back(nullptr); }
    void place(Node* node, bool isFostered);
    void placeFostered(Node* node);
    void flush();
    Node* pop();
    void popUntil(std::uint32_t element);
    void popTo(std::initializer_list<std::uint32_t> elements);
    void impliedEndTags(std::uint32_t except);
    bool isInScope(std::uint32_t element) const;
    bool isInTableScope(std::uint32_t element) const;
    void closeP();
    void resetMode();
    void pushFormatting(Node* node);
    void clearToMarker();
    Node* findFormatting(std::uint32_t element) const;
    void removeFormatting(Node* node);
    void reconstruct();
    void startAnchor(const NaiveToken& token);
    static NaiveToken startOf(std::uint32_t element);
    static NaiveToken endOf(std::uint32_t element);
    void outlineBelow(const Node& node, std::size_t depth, std::string& outline) const;

    std::vector<std::unique_ptr<Node>> nodes_;
    Node root_;
    Nodes stack_;
    Nodes list_; ///< null for a marker
    Mode mode_ = Mode::Body;
    Mode originalMode_ = Mode::Body;
    std::string pendingText_;
    bool pendingTextFoster_ = false;
    std::string tableText_;
};

} // namespace testing_support
