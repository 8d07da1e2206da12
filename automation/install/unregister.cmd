@echo off
rem Removes the registration of the component in this folder.
regsvr32 /s /u "%~dp0tessaro.dll"
if errorlevel 1 (
    echo Not unregistered: the machine's registration can be removed by an administrator only.
    exit /b 1
)
echo Unregistered.
