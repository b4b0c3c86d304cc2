#pragma once

#include "containers/linked_list.h"
#include "containers/pair.h"
#include "support/html_names.h"

#include <cstdint>

class CssDeclarationList;
class HtmlValue;
class ValueCache;
struct SPVector;

/// What a node of a document is. Payloads lie in the storage of their tree: whoever closes the tree
/// calls their destructors. Temporary ones are plain objects of their users.
class HtmlGenericNodeData {
public:
    explicit HtmlGenericNodeData(ZVHTMLElement element)
        : elementId(element)
    {
    }

    HtmlGenericNodeData(const HtmlGenericNodeData&) = delete;
    HtmlGenericNodeData& operator=(const HtmlGenericNodeData&) = delete;
    virtual ~HtmlGenericNodeData();

    virtual bool hasAttributes() const;

    /// Null for what has no declarations.
    virtual CssDeclarationList* getDeclarations() const;
    virtual CssDeclarationList* getUndoDeclarations() const;

    /// Takes over what a payload of the same class can give to a second node. source: null changes
    /// nothing. cache: where copied declarations have their values.
    virtual void copyFrom(const HtmlGenericNodeData* source, ValueCache* cache);

    ZVHTMLElement elementId; // 0 in a text node
    std::uint32_t stackEntry = 0; // its entry on the stack of open elements; 0: not there
};

/// The characters of a text node.
class HtmlTextNodeData : public HtmlGenericNodeData {
public:
    HtmlTextNodeData()
        : HtmlGenericNodeData(ELEMENT_NONE)
    {
    }

    /// With a copy of a text, see setText. Throws std::bad_alloc.
    HtmlTextNodeData(const char16_t* units, std::uint32_t unitCount);

    ~HtmlTextNodeData() override;

    void copyFrom(const HtmlGenericNodeData* source, ValueCache* cache) override;

    /// Replaces the text by a copy of that many units; it ends at the first unit 0. Null is an
    /// empty text. Throws std::bad_alloc, the old text unharmed.
    void setText(const char16_t* units, std::uint32_t unitCount);

    /// The same; false when there is no memory.
    bool trySetText(const char16_t* units, std::uint32_t unitCount);

    char16_t* text = nullptr; // owned, zero-terminated; null until a text is set
    std::uint32_t length = 0; // units, the terminator left out
};

/// The attribute of an element that was kept, with its value, which the cache owns.
using HtmlAttribute = zorvan::Pair<ZVHTMLAttribute, HtmlValue*>;

/// An element.
class HtmlTagNodeData : public HtmlGenericNodeData {
public:
    /// Fails with code 15 for element 0.
    explicit HtmlTagNodeData(ZVHTMLElement element);

    /// Frees the attributes. Neither declarations nor undoDeclarations go here.
    ~HtmlTagNodeData() override;

    bool hasAttributes() const override;
    CssDeclarationList* getDeclarations() const override;
    CssDeclarationList* getUndoDeclarations() const override;

    /// Becomes a second element of the same kind, attributes and style. The list of declarations is
    /// shared. Nothing happens when the source is a text, an img or a tr.
    void copyFrom(const HtmlGenericNodeData* source, ValueCache* cache) override;

    /// The value of an attribute; false, with value left alone, when the element has none.
    bool getAttribute(ZVHTMLAttribute id, HtmlValue*& value) const;

    /// The value of an attribute; null when the element has none.
    HtmlValue* findAttribute(ZVHTMLAttribute id) const;

    /// Sets an attribute, in place of the one with this id if there is one.
    void setAttribute(ZVHTMLAttribute id, HtmlValue* value);

    /// Frees all attributes.
    void clearAttributes();

    CssDeclarationList* declarations = nullptr; // borrowed from the style sheet; may be null
    CssDeclarationList* undoDeclarations = nullptr; // owned, freed by leaveStyle or at close
    zorvan::LinkedList<HtmlAttribute*> attributes; // owned, by ascending id
    std::uint32_t formattingEntry = 0; // in the list of active formatting elements; 0: not there
};

/// Where in the stream the value of src stands: offsets of its start and its end.
struct HtmlSrcRange {
    std::uint32_t start;
    std::uint32_t end;
};

/// An image.
class HtmlImgNodeData : public HtmlTagNodeData {
public:
    HtmlImgNodeData()
        : HtmlTagNodeData(ELEMENT_IMG)
    {
    }

    ~HtmlImgNodeData() override;

    /// Takes the range, and only from another image.
    void copyFrom(const HtmlGenericNodeData* source, ValueCache* cache) override;

    /// Notes the place of src. Throws std::bad_alloc.
    void setSrcRange(std::uint32_t start, std::uint32_t end);

    HtmlSrcRange* srcRange = nullptr; // owned; null without a src
};

/// What a row knows of the cells that reach into it from above.
struct HtmlSpanInfo {
    std::uint32_t hasRowSpans;
    SPVector* hSpanInfo; // owned: SpanInfo records, one for each column
};

/// A table row.
class HtmlTrNodeData : public HtmlTagNodeData {
public:
    HtmlTrNodeData()
        : HtmlTagNodeData(ELEMENT_TR)
    {
    }

    ~HtmlTrNodeData() override;

    /// The spans of the row, made empty by the first call. Throws std::bad_alloc.
    HtmlSpanInfo& ensureSpanInfo();

    HtmlSpanInfo* spanInfo = nullptr; // owned; null until the table output makes it
};
