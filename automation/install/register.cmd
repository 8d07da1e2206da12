@echo off
rem Registers the component in this folder: for the machine, or where that is not allowed, for the user.
regsvr32 /s "%~dp0tessaro.dll"
if errorlevel 1 (
    echo Registration failed.
    exit /b 1
)
echo Registered.
