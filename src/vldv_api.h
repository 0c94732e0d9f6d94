#pragma once

/// What a program, a module or an outside test of the library may use: the contract. Everything else is hidden.
#define VLDV_API __attribute__((visibility("default")))

/// What only the programs of this house use, `velmira` and `vldv`; it may change with every version.
#define VLDV_INTERNAL_API __attribute__((visibility("default")))
