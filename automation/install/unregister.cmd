@echo off
rem Removes the registration of the component in this folder.
regsvr32 /s /u "%~dp0tessaro.dll" && echo Unregistered. || (echo Failed. & exit /b 1)
