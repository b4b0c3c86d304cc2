#pragma once

#include "containers/arena.h"
#include "containers/array_list.h"
#include "containers/hash_map.h"
#include "style/css_declaration.h"
#include "support/css_names.h"
#include "tree/html_value.h"

#include <cstdint>
#include <memory>

/// Declarations by property, at most one for each: what style is said with. The order of iteration
/// is that of HashMap. An owning list deletes its declarations and takes copies of what it is given
/// by others; any other only points at declarations of somebody else. Where there is no memory,
/// std::bad_alloc is thrown and the list holds what it held, in the same order, with two
/// exceptions: a call that makes it owning may have done so by then, and merge keeps what it has
/// merged so far.
class CssDeclarationList : public zorvan::HashMap<ZVCSSProperty, CssDeclaration*> {
public:
    using Base = zorvan::HashMap<ZVCSSProperty, CssDeclaration*>;

    /// cache: borrowed, outlives the list; where the values of the declarations come from.
    explicit CssDeclarationList(ValueCache* cache, bool owning = true);

    /// An owning list whose storage and declarations lie in an arena, which outlives it: for lists
    /// that are kept to the end, which make the most declarations by far.
    CssDeclarationList(ValueCache* cache, zorvan::Arena& arena);

    ~CssDeclarationList() override;

    /// Stores a declaration in place of the one that the property has, whatever their importance.
    /// An owning list takes the declaration over, also when it fails.
    void add(CssDeclaration* declaration);

    /// Makes the list owning and stores a new declaration; a null value stores nothing.
    void set(ZVCSSProperty property, HtmlValue* value, bool important, bool edgeMargin);

    /// Makes the list owning and stores a copy.
    void setCopy(const CssDeclaration& declaration);

    /// The same for a property that is there; answers false, and does nothing, for any other.
    bool replaceByCopy(const CssDeclaration& declaration);

    /// Gives the declaration of a property, which must be there, a new and only value; its marks
    /// stay. Makes the list owning unless nothing changes.
    void replaceValue(ZVCSSProperty property, HtmlValue* value);

    /// Removes the declaration of a property; no effect when there is none.
    void remove(ZVCSSProperty property);

    /// Takes what is missing here from source, in its order, and replaces what is not important
    /// here and is there. An owning list takes copies; copy: makes this list owning first, unless
    /// there is nothing to take. source: another list.
    void merge(const CssDeclarationList& source, bool copy);

    /// Makes the list owning: what it points at is replaced by copies, in place.
    void takeOwnership();

    /// The kind of the first value of a property, 0 when the property is absent or out is null, and
    /// in out what the value is as an integer: percentages and numbers without their fraction, the
    /// number of a color, keyword or enumerator, whole pixels at 96 dots per inch of a length. What
    /// does not fit is -2,147,483,648. For a string out is left alone.
    std::uint32_t getIntValue(ZVCSSProperty property, std::int32_t* out) const;

    /// The first value of a property; null when the property is absent.
    HtmlValue* findValue(ZVCSSProperty property) const
    {
        CssDeclaration* const* declaration = find(property);
        return declaration != nullptr ? (*declaration)->getValue() : nullptr;
    }

    /// Becomes an owning copy of source with the same chains and capacities, so that both go on
    /// alike. source: another list.
    void copyExactlyFrom(const CssDeclarationList& source);

    /// Deletes the declarations of an owning list and empties the list.
    void clear();

    bool isOwning() const { return ownsDeclarations; }
    bool isInArena() const { return arena_ != nullptr; }

    ValueCache* const valueCache; // borrowed

    /// What becomes of the lengths when an element that has this list is entered. Those of a list
    /// that several elements share are resolved for good with the first one: again would change the
    /// order.
    enum class Lengths : std::uint8_t { Resolve, ResolveOnce, Resolved };
    Lengths lengths = Lengths::Resolve;

    /// The declarations as entering an element comes across them: first those to be undone, then
    /// those to be put into force.
    struct Visits {
        explicit Visits(std::int32_t count)
            : undone(count + 1)
            , entered(count + 1)
        {
        }

        zorvan::ArrayList<const CssDeclaration*> undone; // borrowed from the list
        zorvan::ArrayList<const CssDeclaration*> entered; // the same
    };
    /// Of a list of which resolving for good has changed the order, which each further element is
    /// still entered in; null of any other.
    std::unique_ptr<Visits> visits;

private:
    class PendingCopies;

    CssDeclarationList(ValueCache* cache, bool owning, zorvan::Arena* arena);

    template <typename... Arguments> CssDeclaration* makeDeclaration(Arguments&&... arguments);
    void deleteDeclaration(CssDeclaration* declaration);
    void moveToArena(CssDeclaration*& declaration);
    void deleteDeclarations();
    void place(CssDeclaration* declaration);
    bool holds(const CssDeclaration* declaration) const;
    void replaceByCopies();
    void addFrom(CssDeclaration* declaration);
    void putAgain(ZVCSSProperty property);

    zorvan::Arena* const arena_; // borrowed; null when the declarations come from the heap
    bool ownsDeclarations;
    bool hasValueLists_ = false; // in use for an arena: some declaration has, or had, a list
};
