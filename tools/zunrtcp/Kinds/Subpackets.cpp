// The kinds that a packet type tells.
#include "tools/zunrtcp/Kinds/Kinds.h"
#include "tools/zunrtcp/Kinds/PayloadFeedback/Rows.h"
#include "tools/zunrtcp/Kinds/RegisteredForms/RegisteredForm.h"
#include "tools/zunrtcp/Kinds/Reports/Rows.h"
#include "tools/zunrtcp/Kinds/TransportFeedback/Rows.h"

namespace zunrtcp {

namespace {

constexpr const KindRow* kRows[] = {&sr_row, &rr_row, &sdes_row, &bye_row, &app_row, &rtpfb_row, &psfb_row};

// Types that others registered.
constexpr UnmodelledKind kUnmodelled[] = {
    {192, "full intra request", nullptr},
    {193, "negative acknowledgement", nullptr},
    {195, "IJ", nullptr},
    {207, "XR", nullptr},
    {kRegisteredForm + 207, "XR", nullptr, DescribeXr},
    {208, "AVB", nullptr},
    {209, "RSI", nullptr},
    {210, "TOKEN", nullptr},
    {211, "IDMS", nullptr},
    {212, "RGRS", nullptr},
    {213, "SNM", nullptr},
};

}  // namespace

constinit const KindTable subpacket_kinds = {&subpacket_level, kRows, kUnmodelled};

}  // namespace zunrtcp
