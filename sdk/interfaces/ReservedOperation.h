#pragma once

/**
 * Keeps one position of an interface's table of virtual operations free.
 *
 * Host and plug-in are built separately, so an operation is found by its position in the table. A reserved position
 * belongs to an operation that the plug-in never calls: hosts neither implement nor call it. `number` only makes the
 * name unique inside the interface; it is the position the line stands at.
 */
#define BIGIMGPREVIEW_RESERVED_OPERATION(number)                                                                       \
    virtual void reservedOperation##number()                                                                           \
    {                                                                                                                  \
    }
