' Changes a cell and a wall of the game in a folder, saves, and reads both back.
' usage: cscript //nologo edit_game.vbs FOLDER
Option Explicit

Const vcGood = 2

Dim folder, game, maps, pages, planes, width, height, image, start, i

If WScript.Arguments.Count <> 1 Then Quit "usage: cscript //nologo edit_game.vbs FOLDER"
folder = WScript.Arguments(0)

Set game = CreateObject("Tessaro.clsVersion")
If Not game.LoadDataPath(folder) Then Quit "No game in " & folder
game.OutputFolder = folder
game.BackupFolder = folder & "\backup"
game.CompileExtension = game.Extension
game.VariantArrays = True     ' VBScript indexes arrays of variants only

' The cell two to the right and two below the top left corner becomes a wall of kind 5.
Set maps = CreateObject("Tessaro.clsGameMaps")
If Not maps.Initialize() Then Quit "The maps cannot be read"
For i = 0 To maps.NumberOfMaps - 1
    WScript.Echo "Map " & i & ": " & Replace(maps.MapName(i), Chr(0), "")
Next
If Not maps.SetMapCode(0, 0, 2, 2, 5) Then Quit "The cell cannot be changed"
If Not maps.SaveMapFile() Then Quit "The maps cannot be saved"

' A frame of colour 15 around the first wall. The pixels of its BMP image are its last 4096 bytes.
Set pages = CreateObject("Tessaro.clsVSwap")
If Not pages.Initialize() Then Quit "The page file cannot be read"
If Not pages.LoadWall(0, image) Then Quit "The wall cannot be read"
start = UBound(image) - 4095
For i = 0 To 63
    image(start + i) = 15
    image(start + 63 * 64 + i) = 15
    image(start + i * 64) = 15
    image(start + i * 64 + 63) = 15
Next
pages.SetChunkData 0, image
If Not pages.SaveVSwap(vcGood) Then Quit "The page file cannot be saved"

' New objects read what is on the disk.
Set maps = CreateObject("Tessaro.clsGameMaps")
Set pages = CreateObject("Tessaro.clsVSwap")
If Not (maps.Initialize() And maps.LoadMap(0, planes, width, height)) Then Quit "No map"
If Not (pages.Initialize() And pages.LoadWall(0, image)) Then Quit "No wall"
WScript.Echo "Map 0 is " & width & " x " & height & ", its cell (2, 2) is " & planes(0)(2 * width + 2)
WScript.Echo "Wall 0 begins with the colours " & image(start) & " and " & image(start + 1)

Sub Quit(message)
    WScript.Echo message
    WScript.Quit 1
End Sub
