# Operations that write to something that all threads share: the check of threads that meets them names the race.
function(races operations check)
  foreach(operation IN LISTS operations)
    wrong(${operation}/races "threads: ${check}" "a data race that the thread sanitizer found" 120)
  endforeach()
endfunction()
races("sharedCopy;isEqual;getDimensions;copyOutBuffer;castToString;getField;getIndex;getJc;getElementObject;getElementProperty;getArrayProperty"
  "constant operations")
races("setElementValue;setStringElement;setFieldValues;assignElementArray;setElementObject;unshare;beginIterator"
  "copies on several threads")
races("createArrayImpl;createStructArrayImpl;createEnumArrayImpl;createSparseDoubleImpl;createBufferImpl;createArrayFromBufferImpl;createValueObjectImpl;createHandleObjectRefImpl;createEnumerationObjectImpl"
  "factories on several threads")
