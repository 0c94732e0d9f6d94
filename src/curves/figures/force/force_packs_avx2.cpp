#define VLDV_VECTOR_BYTES 32
#include "curves/figures/force/force_packs_kernel.h"

namespace vldv::curves {

void mark_steps_avx2(const pack_step& step) noexcept { run_pack_step(step); }

} // namespace vldv::curves
