#pragma once

/* Marks what the support library hands out; everything else of the project is hidden. */
#define ZV_EXPORT __attribute__((visibility("default")))
