#include "api/green/green_texts.h"

namespace {

const Named kReasons[] = {
    {0, "greenethr_admin_down"},  {1, "greenethr_fiber_port"},      {2, "greenethr_link_up"},
    {3, "greenethr_link_down"},   {4, "greenethr_long_cable"},      {5, "greenethr_short_cable"},
    {6, "greenethr_unkwn_cable_len"}, {7, "greenethr_no_energy"},   {8, "greenethr_forced"},
    {9, "greenethr_not1gig"},     {10, "greenethr_not_attached"},
};

}  // namespace

const TextMap kGreenReason{kReasons, "greenethr_invalid_val"};
