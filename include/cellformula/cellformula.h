#ifndef CELLFORMULA_H
#define CELLFORMULA_H

// Everything a host needs: the driver, the host interface, every node class
// and the library's version.
#include "arithmetic.h"
#include "astnode.h"
#include "calculationcollection.h"
#include "comparison.h"
#include "compiledformula.h"
#include "dependencygraph.h"
#include "formularesult.h"
#include "logic.h"
#include "mathfunctions.h"
#include "parserdriver.h"
#include "radix.h"
#include "spreadsheethelper.h"
#include "structuraledit.h"
#include "textfunctions.h"
#include "variable.h"
#include "version.h"

#endif
