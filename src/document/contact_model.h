#pragma once

namespace vldv::document {

/// Probe and sample of a force curve. Lengths in nm, forces in nN, moduli in GPa (nN/nm²), energies in nN·nm (1e-18 J).
struct contact {
    double tipRadius = 20.0;        ///< nm
    double modulus = 1.0;           ///< reduced modulus E*, GPa
    double hamaker = 0.1;           ///< Hamaker constant, nN·nm
    double contactDistance = 0.165; ///< separation of surfaces in contact, nm (Israelachvili)
    double spring = 0.5;            ///< cantilever, N/m (nN/nm)
};

/// Force between sphere and plane at separation `d` in nm; attraction is negative. Van der Waals' -HR/(6 d²) down to
/// the contact distance a0 (H. C. Hamaker, Physica 4 (1937) 1058), and there Hertz' repulsion on top of a constant
/// adhesion: 4/3 E* √R δ^(3/2) - F_ad with δ = a0 - d (B. V. Derjaguin, V. M. Muller, Yu. P. Toporov, J. Colloid
/// Interface Sci. 53 (1975) 314).
double contact_force(const contact& pair, double d) noexcept;

/// The force that separates the surfaces: HR/(6 a0²), which is 2πRw with the work of adhesion w = H/(12π a0²).
double adhesion_force(const contact& pair) noexcept;

/// The gradient of the repulsion under a load, 2 E* √(R δ) in N/m, with the δ at which contact_force is the load; not
/// below -adhesion. In series with the spring it is the slope of a force curve in contact, k kc / (k + kc).
double contact_stiffness(const contact& pair, double load) noexcept;

/// The position of the unbent cantilever above the surface, nm, at which the probe jumps into contact when it comes
/// nearer: where the gradient of the attraction, HR/(3 d³), exceeds the spring.
double snap_in_position(const contact& pair) noexcept;
/// The position at which the probe jumps off when it is drawn away: at the full adhesion, since the gradient beyond the
/// contact distance exceeds any soft spring. Requires HR/(3 a0³) > spring.
double snap_off_position(const contact& pair) noexcept;

/// Force on the probe with the unbent cantilever at height `z` above the surface, in equilibrium with the spring:
/// z = d - F(d)/k. Of the two stable states near the surface the one that `touching` asks for, if it exists at `z`.
double equilibrium_force(const contact& pair, double z, bool touching) noexcept;

} // namespace vldv::document
