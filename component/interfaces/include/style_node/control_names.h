// The names of the dialog's controls, in the order of their ids: what scripts and recorded transcripts call
// them.
#pragma once

#include "automation/text_types.h"

namespace style_node {

constexpr automation::String_View Control_Names[] = {u"cmbHookFlash",
                                                     u"lstSupervisedTypeID",
                                                     u"txtDisconnect",
                                                     u"txtTransfer",
                                                     u"fra",
                                                     u"cmbThreshold",
                                                     u"cmbRingOff",
                                                     u"cmbRingOn",
                                                     u"cmbBusyOff",
                                                     u"cmbBusyOn",
                                                     u"cmbRingLimit",
                                                     u"cmbNumRetries",
                                                     u"cmbBusyRetry",
                                                     u"txtRetrieve",
                                                     u"lblThreshold",
                                                     u"lblRingOff",
                                                     u"lblRingOn",
                                                     u"lblBusyOn",
                                                     u"lblBusyOff",
                                                     u"lblRingLimit",
                                                     u"lblNumRetries",
                                                     u"lblBusyRetry",
                                                     u"lblRetrieve",
                                                     u"fraSupervised",
                                                     u"optEnhanced",
                                                     u"optDialContinue",
                                                     u"optPartial",
                                                     u"optFull",
                                                     u"optBlind",
                                                     u"cmdFirst",
                                                     u"cmdLast",
                                                     u"cmdNext",
                                                     u"cmdPrevious",
                                                     u"cmbNode",
                                                     u"cmdOK",
                                                     u"cmdCancel",
                                                     u"cmdApply",
                                                     u"cmdHelp",
                                                     u"txtDescription",
                                                     u"lblDisconnect",
                                                     u"lblTransfer",
                                                     u"lblHookFlash",
                                                     u"lblRecordPosition",
                                                     u"lblDescription"};

} // namespace style_node
