#pragma once

#include "support/object.h"

namespace zorvan {

/// A key and a value. What they may point at belongs to whoever made the pair.
template <typename K, typename V>
class Pair : public virtual Object2, public virtual AbstractObject {
public:
    Pair()
        : key()
        , value()
    {
    }

    Pair(K pairKey, V pairValue)
        : key(pairKey)
        , value(pairValue)
    {
    }

    K key;
    V value;
};

} // namespace zorvan
