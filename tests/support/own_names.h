#pragma once

// Tests speak of our own names as the sources do.
namespace vldv {}
using namespace vldv;
