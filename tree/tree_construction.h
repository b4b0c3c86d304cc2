#pragma once

#include "filter/html_filter_context.h"
#include "scanner/token.h"

#include <cstdint>

// The tree builder: its loop, the making of nodes, the stack of open elements. The insertion modes
// stand in files of their own.

/// insertionMode and originalInsertionMode hold these numbers; any other is a failure.
enum class InsertionMode : std::uint32_t {
    Initial = 1,
    BeforeHtml,
    BeforeHead,
    InHead,
    InHeadNoscript,
    AfterHead,
    InBody,
    Text,
    InTable,
    InTableText,
    InCaption,
    InColumnGroup,
    InTableBody,
    InRow,
    InCell,
    InSelect,
    InSelectInTable,
    AfterBody,
    InFrameset,
    AfterFrameset,
    AfterAfterBody,
    AfterAfterFrameset,
};

/// Answers of the insertion modes.
enum InsertionAnswer : int {
    ANSWER_USED = 0,
    ANSWER_IGNORED = 1,
    ANSWER_AGAIN = 2, ///< the same token is processed again in the mode now set
};

/// Reads tokens and builds the current tree until statusFlags is not 0.
void InsertNode(HtmlFilterContext& context);

/// Makes the node of a token's element, places it, pushes it and answers it. applyAttributes: read
/// the tag's attributes unless the token is synthetic. flushText: make pending text a node first.
HtmlTreeNode* CreateAppendPushElement(
    const Token* token, bool applyAttributes, HtmlFilterContext& context, bool flushText);

/// Inserts an element: attributes and text flush.
HtmlTreeNode* InsertElement(const Token* token, HtmlFilterContext& context);

/// Turns pendingText into a text node and pushes it; answers 1.
int CreateAppendPushText(HtmlFilterContext& context);

/// The payload of an element, in the current tree's arena; null for id 0.
HtmlGenericNodeData* CreateNodeData(std::uint32_t elementId, HtmlFilterContext& context);

/// Adds a character to text of the tree: as one unit, but a large one as the text of its decimal
/// reference.
void AppendCharacter(std::uint32_t character, zorvan::WString& text);

/// Adds one character to pendingText.
void AppendPendingChar(const Token* token, HtmlFilterContext& context);

/// Makes pending text a node, when there is any, and pops it.
void FlushPendingText(HtmlFilterContext& context);

/// Pops the top element, behind its pending text, and answers it.
HtmlTreeNode* PopElement(HtmlFilterContext& context);

/// Pops at least one element, and up to one with the id.
void PopElementsUntil(std::uint32_t elementId, HtmlFilterContext& context);

/// Top and bottom of the stack; an empty one fails as OpenElements does.
HtmlTreeNode* CurrentStackNode(HtmlFilterContext& context);
HtmlTreeNode* FirstStackNode(HtmlFilterContext& context);

/// The element id of the top of the stack.
std::uint32_t CurrentElementId(HtmlFilterContext& context);

/// Takes a node off the stack wherever it stands; currentNode is the caller's business.
void RemoveFromStack(HtmlTreeNode* node, HtmlFilterContext& context);

/// Scope tests, in time of the stoppers alone. A stack of fewer than two entries fails with code
/// 137 and "Index is too small.".
bool HasElementInScope(std::uint32_t elementId, HtmlFilterContext& context);
bool HasElementInButtonScope(std::uint32_t elementId, HtmlFilterContext& context);
bool HasElementInListedScope(std::uint32_t elementId, const std::uint32_t* stoppers,
    std::uint32_t count, HtmlFilterContext& context);
bool HasElementOnStack(std::uint32_t elementId, HtmlFilterContext& context);

/// Pops implied end tags except one id (0 none); answers how many.
std::uint32_t GenerateImpliedEndTags(std::uint32_t exceptElementId, HtmlFilterContext& context);

/// Where fostered nodes go: null with nodeOut the table to go in front of, or the parent to append
/// to, with nodeOut null.
HtmlTreeNode* FindFosterParent(HtmlTreeNode*& nodeOut, HtmlFilterContext& context);

/// Makes a node for a payload at the foster parent.
HtmlTreeNode* InsertFostered(HtmlGenericNodeData* data, HtmlFilterContext& context);

/// Sets insertionMode from the stack.
void ResetInsertionMode(HtmlFilterContext& context);

/// Closes an open p in button scope.
void ClosePElement(HtmlFilterContext& context);

/// Skips the content of a script up to its end tag.
void SkipScriptContent(std::uint32_t elementId, HtmlFilterContext& context);

/// The tree, and the state of it, that is built now; state null when there is none.
HtmlTree& CurrentTree(HtmlFilterContext& context);
TreeState* CurrentTreeState(HtmlFilterContext& context);

inline void SetInsertionMode(InsertionMode mode, HtmlFilterContext& context)
{
    context.insertionMode = static_cast<std::uint32_t>(mode);
}
