// A function of the types of fin_price that does nothing: what the server takes to call one.
extern "C" {
#include "postgres.h"
// After postgres.h.
#include "fmgr.h"

PG_MODULE_MAGIC;
PG_FUNCTION_INFO_V1(seven_arguments);

Datum seven_arguments(FunctionCallInfo call) { return Float8GetDatum(DatumGetFloat8(call->args[3].value)); }
}
