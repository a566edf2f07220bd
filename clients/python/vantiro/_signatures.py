"""The parameters of the exported functions, as one letter each.

i  an integer                           o  a caller's string buffer: char *buffer, unsigned *size
b  a flag of one byte                   x  a position in a list, followed by such a buffer
s  a string                             c  a function that receives intermediate results
l  a list of strings                    -  nothing
p  two lists of strings
"""
from typing import Dict

_FUNCTIONS = """
-  init initJava open peach_handle
i  actionWait addUserClientsToProject approveUploadedBundles close downloadPartialResult
   downloadResult flushCachedJobs getBundleId getLastError getProjectId getProjectParamCount
   getProjectStatus getStreamedResultFilesCount getUsedCpuTime getUsedTime isCompleted isFailed
   markAllJobsCreated peachDone peach_done peach_execute peach_getProjectHandle peach_getProjectId
   peach_newDataBundle peach_sourcesChanged printStatistics ready removeProject startProject
   stopProject stopWaitingBG unzip uploadBundle waitCompletion waitCompletionBG
ii cleanup isJobCompleted peach_postProcessed peach_setJobs peach_setPriorityI peach_setProjectId
   setBundleId setProjectId
b  unload
bb unload2
ib peach_setAllowPartial peach_setCleanup peach_setClose peach_setDataCopy
   peach_setDataSkipDigest peach_setExeSkipDigest peach_setJobSkipDigest peach_setMessages
   peach_setParamCopy peach_setParamSkipDigest peach_setRemove peach_setStream setStreamResults
s  bundleExists initFile setLogLevel
ss bundleVersionExists bundleWithPrefixExists initFileWithPassword signJar
sss unzipFile
is peach_addDataFile peach_addExeImport peach_addOutputFile peach_addParamExternalResource
   peach_addParamFile peach_addSourceFile peach_newDataBundleWithName peach_setDescription
   peach_setExeBundleName peach_setExecutable peach_setName peach_setPriority
   peach_setResultFile peach_setStateDir setDownloadDir setUnzipDir uploadBundleWithName useBundle
iss peach_addDataFileWithDir peach_addParamFileWithDir peach_addParamFileWithTarget
   peach_putDataExtras peach_putExeExtras peach_putJobExtras peach_putParamExtras
   peach_putProjectParam peach_putSourceExtras useBundleWithPrefix
issss peach_addExeFile
iis createEmptyProject sendJobPostParameter
ssssissiiss initWithoutFile
l  peach
il createCachedJob createJob createProjectJobs peach_addJobFile peach_setJobFileNames
   setProjectParams
isl peach_addJobFileWithDir
iisl createProject
isssssssssp createBundle
isssssssssssp createSignedBundle
o  getLastErrorMessage getTempDir getUserLogin
io describeStatusCode getLastCreatedBundleName getProjectDescription getResultDirectory
   getResultFile getStatisticsString peachNextFile peach_getLastErrorMessage peach_nextFile
so getJavaSystemProperty
sso getPluginConf
iso getProjectParamValue getProjectStatistic
ix getProjectParamName getResultFiles getStreamedResultFiles
ic peach_setIntermediateResultHandler
"""


def _table() -> Dict[str, str]:
    table: Dict[str, str] = {}
    letters = ""
    for line in _FUNCTIONS.strip().splitlines():
        names = line.split()
        if not line.startswith(" "):
            letters = names.pop(0).replace("-", "")
        table.update((name, letters) for name in names)
    return table


SIGNATURES = _table()
