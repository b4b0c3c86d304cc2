#pragma once

#include "containers/array_list.h"
#include "style/css_token.h"

/// The tokens of a declaration's value, without white space. They stand in the list by value.
using CssTokenList = zorvan::ArrayList<CssToken>;
