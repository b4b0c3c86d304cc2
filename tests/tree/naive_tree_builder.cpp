#include "tests/tree/naive_tree_builder.h"

#include "support/html_strings.h"
#include "tree/element_sets.h"

#include <algorithm>

namespace testing_support {

namespace {

    /// Below this level an outline gives the level as a number.
    constexpr std::size_t kDeepestIndent = 200;

} // namespace

NaiveTreeBuilder::NaiveTreeBuilder()
{
    Node* const html = make(ELEMENT_HTML);
    append(&root_, html);
    append(html, make(ELEMENT_HEAD));
    Node* const body = make(ELEMENT_BODY);
    append(html, body);
    nodeCount = 3;
    stack_ = {html, body};
}

void NaiveTreeBuilder::process(const NaiveToken& token)
{
    while (dispatch(token) == Again) { }
}

std::string NaiveTreeBuilder::outline() const
{
    std::string outline;
    outlineBelow(root_, 0, outline);
    return outline;
}

void NaiveTreeBuilder::outlineBelow(const Node& node, std::size_t depth, std::string& outline) const
{
    for (const Node* child : node.children) {
        outline += (depth > kDeepestIndent ? "[level " + std::to_string(depth) + "] "
                                           : std::string(depth * 2, ' '))
            + (child->element == ELEMENT_NONE
                    ? '"' + child->text + '"'
                    : zorvan::HTMLStrings::elementName(static_cast<ZVHTMLElement>(child->element))
                        + child->attributeText)
            + '\n';
        outlineBelow(*child, depth + 1, outline);
    }
}

bool NaiveTreeBuilder::isIn(std::uint32_t element, std::initializer_list<std::uint32_t> set)
{
    return std::find(set.begin(), set.end(), element) != set.end();
}

bool NaiveTreeBuilder::isFosterTarget(const Node& node)
{
    return isIn(
        node.element, {ELEMENT_TABLE, ELEMENT_TBODY, ELEMENT_TFOOT, ELEMENT_THEAD, ELEMENT_TR});
}

std::size_t NaiveTreeBuilder::indexOf(const Nodes& nodes, const Node* node)
{
    const auto place = std::find(nodes.begin(), nodes.end(), node);
    return place == nodes.end() ? kNowhere : static_cast<std::size_t>(place - nodes.begin());
}

void NaiveTreeBuilder::detach(Node* node)
{
    if (node->parent == nullptr)
        return;
    std::erase(node->parent->children, node);
    node->parent = nullptr;
}

void NaiveTreeBuilder::append(Node* parent, Node* node)
{
    parent->children.push_back(node);
    node->parent = parent;
}

void NaiveTreeBuilder::insertBefore(Node* reference, Node* node)
{
    Nodes& siblings = reference->parent->children;
    siblings.insert(std::find(siblings.begin(), siblings.end(), reference), node);
    node->parent = reference->parent;
}

NaiveToken NaiveTreeBuilder::startOf(std::uint32_t element)
{
    return {NaiveToken::StartTag, element, 0, {}, {}, 0};
}

NaiveToken NaiveTreeBuilder::endOf(std::uint32_t element)
{
    return {NaiveToken::EndTag, element, 0, {}, {}, 0};
}

NaiveTreeBuilder::Answer NaiveTreeBuilder::fail()
{
    parseError = true;
    return Ignored;
}

// --- Nodes and the stack.

NaiveTreeBuilder::Node* NaiveTreeBuilder::make(std::uint32_t element)
{
    nodes_.push_back(std::make_unique<Node>());
    nodes_.back()->element = element;
    ++nextId;
    return nodes_.back().get();
}

NaiveTreeBuilder::Node* NaiveTreeBuilder::insert(const NaiveToken& token, bool flushFirst)
{
    if (flushFirst)
        flush();
    Node* const node = make(token.element);
    node->attributeText = token.attributeText;
    node->attributeClass = token.attributeClass;
    place(node, token.isFostered);
    stack_.push_back(node);
    return node;
}

void NaiveTreeBuilder::place(Node* node, bool isFostered)
{
    ++nodeCount;
    if (isFostered && isFosterTarget(*stack_.back()))
        placeFostered(node);
    else
        append(stack_.back(), node);
}

void NaiveTreeBuilder::placeFostered(Node* node)
{
    for (std::size_t i = stack_.size(); i-- > 0;) {
        if (stack_[i]->element != ELEMENT_TABLE)
            continue;
        if (stack_[i]->parent != nullptr)
            insertBefore(stack_[i], node);
        else
            append(stack_.at(i - 1), node);
        return;
    }
    append(stack_.front(), node);
}

void NaiveTreeBuilder::flush()
{
    if (pendingText_.empty())
        return;
    Node* const node = make(ELEMENT_NONE);
    node->text = pendingText_;
    place(node, pendingTextFoster_);
    pendingText_.clear();
    pendingTextFoster_ = false;
}

NaiveTreeBuilder::Node* NaiveTreeBuilder::pop()
{
    flush();
    Node* const node = stack_.back();
    stack_.pop_back();
    return node;
}

void NaiveTreeBuilder::popUntil(std::uint32_t element)
{
    while (pop()->element != element) { }
}

void NaiveTreeBuilder::popTo(std::initializer_list<std::uint32_t> elements)
{
    while (!isIn(stack_.back()->element, elements))
        pop();
}

void NaiveTreeBuilder::impliedEndTags(std::uint32_t except)
{
    while (stack_.back()->element == ELEMENT_P && stack_.back()->element != except)
        pop();
}

/// Button scope and default scope are the same without a button.
bool NaiveTreeBuilder::isInScope(std::uint32_t element) const
{
    for (std::size_t i = stack_.size(); i-- > 0;) {
        if (stack_[i]->element == element)
            return true;
        if (isIn(stack_[i]->element,
                {ELEMENT_CAPTION, ELEMENT_HTML, ELEMENT_TABLE, ELEMENT_TD, ELEMENT_OBJECT}))
            return false;
    }
    return false;
}

bool NaiveTreeBuilder::isInTableScope(std::uint32_t element) const
{
    for (std::size_t i = stack_.size(); i-- > 0;) {
        if (stack_[i]->element == element)
            return true;
        if (isIn(stack_[i]->element, {ELEMENT_HTML, ELEMENT_TABLE}))
            return false;
    }
    return false;
}

void NaiveTreeBuilder::closeP()
{
    if (isInScope(ELEMENT_P))
        inBody(endOf(ELEMENT_P));
}

void NaiveTreeBuilder::resetMode()
{
    for (std::size_t i = stack_.size(); i-- > 1;) {
        switch (stack_[i]->element) {
        case ELEMENT_TD:
            mode_ = Mode::Cell;
            return;
        case ELEMENT_TR:
            mode_ = Mode::Row;
            return;
        case ELEMENT_TBODY:
            mode_ = Mode::TableBody;
            return;
        case ELEMENT_CAPTION:
            mode_ = Mode::Caption;
            return;
        case ELEMENT_TABLE:
            mode_ = Mode::Table;
            return;
        case ELEMENT_BODY:
            mode_ = Mode::Body;
            return;
        }
    }
}

// --- Active formatting elements.

void NaiveTreeBuilder::pushFormatting(Node* node)
{
    int count = 0;
    for (std::size_t i = list_.size(); i-- > 0;) {
        if (list_[i] == nullptr)
            break;
        if (list_[i]->element != node->element || node->attributeClass <= 0
            || list_[i]->attributeClass != node->attributeClass)
            continue;
        if (++count == 3) {
            list_.erase(list_.begin() + static_cast<std::ptrdiff_t>(i));
            break;
        }
    }
    list_.push_back(node);
}

void NaiveTreeBuilder::clearToMarker()
{
    while (!list_.empty()) {
        const Node* const last = list_.back();
        list_.pop_back();
        if (last == nullptr)
            return;
    }
}

NaiveTreeBuilder::Node* NaiveTreeBuilder::findFormatting(std::uint32_t element) const
{
    for (std::size_t i = list_.size(); i-- > 0;) {
        if (list_[i] == nullptr)
            return nullptr;
        if (list_[i]->element == element)
            return list_[i];
    }
    return nullptr;
}

void NaiveTreeBuilder::removeFormatting(Node* node) { std::erase(list_, node); }

void NaiveTreeBuilder::reconstruct()
{
    if (list_.empty())
        return;
    const auto isDone
        = [this](const Node* node) { return node == nullptr || indexOf(stack_, node) != kNowhere; };
    std::size_t position = list_.size() - 1;
    if (isDone(list_[position]))
        return;
    while (position != 0 && !isDone(list_[position]))
        --position;
    if (isDone(list_[position]))
        ++position;
    for (; position < list_.size(); ++position) {
        NaiveToken token = startOf(list_[position]->element);
        token.attributeText = list_[position]->attributeText;
        token.attributeClass = list_[position]->attributeClass;
        list_[position] = insert(token, /*flushFirst=*/false);
    }
}

void NaiveTreeBuilder::startAnchor(const NaiveToken& token)
{
    if (Node* const found = findFormatting(ELEMENT_A); found != nullptr) {
        parseError = true;
        inBody(endOf(ELEMENT_A));
        std::erase(stack_, found);
        removeFormatting(found);
    }
    reconstruct();
    pushFormatting(insert(token));
}

NaiveTreeBuilder::Answer NaiveTreeBuilder::adoptionAgency(const NaiveToken& token)
{
    for (int round = 0; round < 8; ++round) {
        Node* const formatting = findFormatting(token.element);
        if (formatting == nullptr)
            return anyOtherEndTag(token);
        if (indexOf(stack_, formatting) == kNowhere) {
            parseError = true;
            removeFormatting(formatting);
            return Used;
        }
        if (!isInScope(token.element))
            return fail();
        if (formatting != stack_.back())
            parseError = true;
        const Nodes snapshot = stack_;
        std::size_t position = indexOf(snapshot, formatting);
        while (position < snapshot.size() && !IsSpecialElement(snapshot[position]->element))
            ++position;
        if (position == snapshot.size()) {
            while (pop() != formatting) { }
            removeFormatting(formatting);
            return Used;
        }
        repair(formatting, snapshot[position], snapshot);
    }
    return Used;
}

void NaiveTreeBuilder::repair(Node* formatting, Node* furthestBlock, const Nodes& stackAtFirst)
{
    Nodes snapshot = stackAtFirst;
    Node* const commonAncestor = snapshot.at(indexOf(snapshot, formatting) - 1);
    Node* bookmark = formatting;
    Node* lastNode = furthestBlock;
    std::size_t position = indexOf(snapshot, furthestBlock);
    for (int pass = 0; pass < 3; ++pass) {
        --position;
        Node* const node = snapshot.at(position);
        if (indexOf(list_, node) == kNowhere) {
            std::erase(stack_, node);
            snapshot = stack_;
            continue;
        }
        if (node == formatting)
            break;
        Node* const clone = make(node->element);
        list_[indexOf(list_, node)] = clone;
        stack_[indexOf(stack_, node)] = clone;
        if (lastNode == furthestBlock)
            bookmark = clone;
        detach(lastNode);
        append(clone, lastNode);
        lastNode = clone;
    }
    detach(lastNode);
    if (isFosterTarget(*commonAncestor))
        placeFostered(lastNode);
    else
        append(commonAncestor, lastNode);

    Node* const copy = make(formatting->element);
    copy->attributeText = formatting->attributeText;
    copy->attributeClass = formatting->attributeClass;
    ++nodeCount;
    for (Node* child : Nodes(furthestBlock->children)) {
        detach(child);
        append(copy, child);
    }
    append(furthestBlock, copy);
    if (const std::size_t at = indexOf(list_, bookmark); at != kNowhere)
        list_.insert(list_.begin() + static_cast<std::ptrdiff_t>(at) + 1, copy);
    removeFormatting(formatting);
    const std::size_t block = indexOf(stack_, furthestBlock);
    stack_.insert(
        block == kNowhere ? stack_.end() : stack_.begin() + static_cast<std::ptrdiff_t>(block) + 1,
        copy);
    std::erase(stack_, formatting);
}

// --- The body.

NaiveTreeBuilder::Answer NaiveTreeBuilder::inBody(const NaiveToken& token)
{
    switch (token.kind) {
    case NaiveToken::Character:
        reconstruct();
        pendingText_ += token.character;
        pendingTextFoster_ = pendingTextFoster_ || token.isFostered;
        return Used;
    case NaiveToken::StartTag:
        return bodyStartTag(token);
    case NaiveToken::EndTag:
        break;
    }
    return bodyEndTag(token);
}

NaiveTreeBuilder::Answer NaiveTreeBuilder::bodyStartTag(const NaiveToken& token)
{
    switch (token.element) {
    case ELEMENT_P:
    case ELEMENT_DIV:
        closeP();
        insert(token);
        return Used;
    case ELEMENT_A:
        startAnchor(token);
        return Used;
    case ELEMENT_B:
    case ELEMENT_I:
    case ELEMENT_FONT:
        reconstruct();
        pushFormatting(insert(token));
        return Used;
    case ELEMENT_OBJECT:
        reconstruct();
        insert(token);
        insertMarker();
        return Used;
    case ELEMENT_TABLE:
        closeP();
        insert(token);
        mode_ = Mode::Table;
        return Used;
    case ELEMENT_CAPTION:
    case ELEMENT_TBODY:
    case ELEMENT_TD:
    case ELEMENT_TR:
        return fail();
    }
    reconstruct();
    insert(token);
    return Used;
}

NaiveTreeBuilder::Answer NaiveTreeBuilder::bodyEndTag(const NaiveToken& token)
{
    switch (token.element) {
    case ELEMENT_DIV:
    case ELEMENT_OBJECT:
        if (!isInScope(token.element))
            return fail();
        impliedEndTags(ELEMENT_NONE);
        parseError = parseError || stack_.back()->element != token.element;
        popUntil(token.element);
        if (token.element == ELEMENT_OBJECT)
            clearToMarker();
        return Used;
    case ELEMENT_P:
        if (!isInScope(ELEMENT_P)) {
            parseError = true;
            inBody(startOf(ELEMENT_P));
            return Again;
        }
        impliedEndTags(ELEMENT_P);
        parseError = parseError || stack_.back()->element != ELEMENT_P;
        popUntil(ELEMENT_P);
        return Used;
    case ELEMENT_A:
    case ELEMENT_B:
    case ELEMENT_I:
    case ELEMENT_FONT:
        return adoptionAgency(token);
    }
    return anyOtherEndTag(token);
}

NaiveTreeBuilder::Answer NaiveTreeBuilder::anyOtherEndTag(const NaiveToken& token)
{
    const Nodes snapshot = stack_;
    for (std::size_t i = snapshot.size(); i-- > 0;) {
        if (snapshot[i]->element == token.element) {
            impliedEndTags(token.element);
            parseError = parseError || stack_.back()->element != token.element;
            while (pop() != snapshot[i]) { }
            return Used;
        }
        if (IsSpecialElement(snapshot[i]->element))
            return fail();
    }
    return Used;
}

// --- Tables.

NaiveTreeBuilder::Answer NaiveTreeBuilder::dispatch(const NaiveToken& token)
{
    switch (mode_) {
    case Mode::Body:
        break;
    case Mode::Table:
        return inTable(token);
    case Mode::TableText:
        return inTableText(token);
    case Mode::TableBody:
        return inTableBody(token);
    case Mode::Row:
        return inRow(token);
    case Mode::Cell:
        return inCell(token);
    case Mode::Caption:
        return inCaption(token);
    }
    return inBody(token);
}

NaiveTreeBuilder::Answer NaiveTreeBuilder::inTable(const NaiveToken& token)
{
    if (token.kind == NaiveToken::Character && isFosterTarget(*stack_.back())) {
        tableText_.clear();
        originalMode_ = mode_;
        mode_ = Mode::TableText;
        return Again;
    }
    if (token.kind == NaiveToken::StartTag) {
        switch (token.element) {
        case ELEMENT_CAPTION:
            popTo({ELEMENT_TABLE, ELEMENT_HTML});
            insertMarker();
            insert(token);
            mode_ = Mode::Caption;
            return Used;
        case ELEMENT_TBODY:
            popTo({ELEMENT_TABLE, ELEMENT_HTML});
            insert(token);
            mode_ = Mode::TableBody;
            return Used;
        case ELEMENT_TD:
        case ELEMENT_TR:
            inTable(startOf(ELEMENT_TBODY));
            return Again;
        case ELEMENT_TABLE:
            parseError = true;
            return inTable(endOf(ELEMENT_TABLE)) == Ignored ? Used : Again;
        }
    }
    if (token.kind == NaiveToken::EndTag) {
        if (token.element == ELEMENT_TABLE) {
            if (!isInTableScope(ELEMENT_TABLE))
                return fail();
            popUntil(ELEMENT_TABLE);
            resetMode();
            return Used;
        }
        if (isIn(token.element, {ELEMENT_CAPTION, ELEMENT_TBODY, ELEMENT_TD, ELEMENT_TR}))
            return fail();
    }
    parseError = true;
    NaiveToken fostered = token;
    fostered.isFostered = true;
    return inBody(fostered);
}

NaiveTreeBuilder::Answer NaiveTreeBuilder::inTableText(const NaiveToken& token)
{
    if (token.kind == NaiveToken::Character) {
        tableText_ += token.character;
        return Used;
    }
    if (tableText_.find_first_not_of(' ') == std::string::npos) {
        pendingText_ += tableText_;
    } else {
        for (const char character : tableText_) {
            NaiveToken fostered = {NaiveToken::Character, 0, character, {}, {}, 0};
            fostered.isFostered = true;
            inBody(fostered);
        }
    }
    mode_ = originalMode_;
    return Again;
}

NaiveTreeBuilder::Answer NaiveTreeBuilder::inTableBody(const NaiveToken& token)
{
    const bool isStart = token.kind == NaiveToken::StartTag;
    const bool isEnd = token.kind == NaiveToken::EndTag;
    if (isStart && token.element == ELEMENT_TR) {
        popTo({ELEMENT_TBODY, ELEMENT_HTML});
        insert(token);
        mode_ = Mode::Row;
        return Used;
    }
    if (isStart && token.element == ELEMENT_TD) {
        parseError = true;
        inTableBody(startOf(ELEMENT_TR));
        return Again;
    }
    if (isEnd && token.element == ELEMENT_TBODY) {
        if (!isInTableScope(ELEMENT_TBODY))
            return fail();
        popTo({ELEMENT_TBODY, ELEMENT_HTML});
        pop();
        mode_ = Mode::Table;
        return Used;
    }
    if ((isStart && isIn(token.element, {ELEMENT_CAPTION, ELEMENT_TBODY}))
        || (isEnd && token.element == ELEMENT_TABLE)) {
        if (!isInTableScope(ELEMENT_TBODY))
            return fail();
        popTo({ELEMENT_TBODY, ELEMENT_HTML});
        inTableBody(endOf(stack_.back()->element));
        return Again;
    }
    if (isEnd && isIn(token.element, {ELEMENT_CAPTION, ELEMENT_TD, ELEMENT_TR}))
        return fail();
    return inTable(token);
}

NaiveTreeBuilder::Answer NaiveTreeBuilder::inRow(const NaiveToken& token)
{
    const bool isStart = token.kind == NaiveToken::StartTag;
    const bool isEnd = token.kind == NaiveToken::EndTag;
    if (isStart && token.element == ELEMENT_TD) {
        popTo({ELEMENT_TR, ELEMENT_HTML});
        insert(token);
        mode_ = Mode::Cell;
        insertMarker();
        return Used;
    }
    if (isEnd && token.element == ELEMENT_TR) {
        if (!isInTableScope(ELEMENT_TR))
            return fail();
        popTo({ELEMENT_TR, ELEMENT_HTML});
        pop();
        mode_ = Mode::TableBody;
        return Used;
    }
    if ((isStart && isIn(token.element, {ELEMENT_CAPTION, ELEMENT_TBODY, ELEMENT_TR}))
        || (isEnd && token.element == ELEMENT_TABLE))
        return inRow(endOf(ELEMENT_TR)) == Ignored ? Used : Again;
    if (isEnd && token.element == ELEMENT_TBODY) {
        if (!isInTableScope(ELEMENT_TBODY))
            return fail();
        inRow(endOf(ELEMENT_TR));
        return Again;
    }
    if (isEnd && isIn(token.element, {ELEMENT_CAPTION, ELEMENT_TD}))
        return fail();
    return inTable(token);
}

NaiveTreeBuilder::Answer NaiveTreeBuilder::closeCell() { return inCell(endOf(ELEMENT_TD)); }

NaiveTreeBuilder::Answer NaiveTreeBuilder::inCell(const NaiveToken& token)
{
    const bool isStart = token.kind == NaiveToken::StartTag;
    const bool isEnd = token.kind == NaiveToken::EndTag;
    if (isEnd && token.element == ELEMENT_TD) {
        if (!isInTableScope(ELEMENT_TD))
            return fail();
        impliedEndTags(ELEMENT_NONE);
        parseError = parseError || stack_.back()->element != ELEMENT_TD;
        popUntil(ELEMENT_TD);
        clearToMarker();
        mode_ = Mode::Row;
        return Used;
    }
    if (isStart && isIn(token.element, {ELEMENT_CAPTION, ELEMENT_TBODY, ELEMENT_TD, ELEMENT_TR})) {
        if (!isInTableScope(ELEMENT_TD))
            return fail();
        closeCell();
        return Again;
    }
    if (isEnd && token.element == ELEMENT_CAPTION)
        return fail();
    if (isEnd && isIn(token.element, {ELEMENT_TABLE, ELEMENT_TBODY, ELEMENT_TR})) {
        if (!isInTableScope(token.element))
            return fail();
        closeCell();
        return Again;
    }
    return inBody(token);
}

NaiveTreeBuilder::Answer NaiveTreeBuilder::inCaption(const NaiveToken& token)
{
    const bool isStart = token.kind == NaiveToken::StartTag;
    const bool isEnd = token.kind == NaiveToken::EndTag;
    if (isEnd && token.element == ELEMENT_CAPTION) {
        if (!isInTableScope(ELEMENT_CAPTION))
            return fail();
        impliedEndTags(ELEMENT_NONE);
        parseError = parseError || stack_.back()->element != ELEMENT_CAPTION;
        popUntil(ELEMENT_CAPTION);
        clearToMarker();
        mode_ = Mode::Table;
        return Used;
    }
    if ((isStart && isIn(token.element, {ELEMENT_CAPTION, ELEMENT_TBODY, ELEMENT_TD, ELEMENT_TR}))
        || (isEnd && token.element == ELEMENT_TABLE)) {
        parseError = true;
        return inCaption(endOf(ELEMENT_CAPTION)) == Ignored ? Used : Again;
    }
    if (isEnd && isIn(token.element, {ELEMENT_TBODY, ELEMENT_TD, ELEMENT_TR}))
        return fail();
    return inBody(token);
}

} // namespace testing_support
