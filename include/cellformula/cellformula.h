#ifndef CELLFORMULA_H
#define CELLFORMULA_H

// Everything a host needs: the driver, the host interface, every node class,
// the editor interfaces and the library's version.
#include "arithmetic.h"
#include "astnode.h"
#include "calculationcollection.h"
#include "cellreferences.h"
#include "comparison.h"
#include "compiledformula.h"
#include "dependencygraph.h"
#include "formulacursor.h"
#include "formularesult.h"
#include "formulatokens.h"
#include "functioncatalogue.h"
#include "logic.h"
#include "mathfunctions.h"
#include "parserdriver.h"
#include "radix.h"
#include "spreadsheethelper.h"
#include "sstringify.h"
#include "structuraledit.h"
#include "syntaxerror.h"
#include "textfunctions.h"
#include "variable.h"
#include "version.h"

#endif
