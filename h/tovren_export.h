// TOVREN_API marks what leaves the shared library, TOVREN_LOCAL what stays although its class leaves.
#ifndef TOVREN_EXPORT_H
#define TOVREN_EXPORT_H

#define TOVREN_API __attribute__((visibility("default")))
#define TOVREN_LOCAL __attribute__((visibility("hidden")))

#endif
