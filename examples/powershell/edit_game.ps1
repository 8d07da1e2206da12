# Changes a cell and a wall of the game in a folder, saves, and reads both back.
# usage: .\edit_game.ps1 FOLDER
param([Parameter(Mandatory)] [string] $Folder)
$ErrorActionPreference = 'Stop'
$vcGood = 2
$Folder = (Resolve-Path $Folder).ProviderPath  # the component knows nothing of the shell's location

$game = New-Object -ComObject Tessaro.clsVersion
if (-not $game.LoadDataPath($Folder)) { throw "No game in $Folder" }
$game.OutputFolder = $Folder
$game.BackupFolder = Join-Path $Folder backup
$game.CompileExtension = $game.Extension

# The cell two to the right and two below the top left corner becomes a wall of kind 5.
$maps = New-Object -ComObject Tessaro.clsGameMaps
if (-not $maps.Initialize()) { throw 'The maps cannot be read' }
for ($i = 0; $i -lt $maps.NumberOfMaps; $i++) { "Map ${i}: $($maps.MapName($i).TrimEnd([char] 0))" }
if (-not $maps.SetMapCode(0, 0, 2, 2, 5)) { throw 'The cell cannot be changed' }
if (-not $maps.SaveMapFile()) { throw 'The maps cannot be saved' }

# A frame of colour 15 around the first wall. The pixels of its BMP image are its last 4096 bytes.
$pages = New-Object -ComObject Tessaro.clsVSwap
if (-not $pages.Initialize()) { throw 'The page file cannot be read' }
$image = $null
if (-not $pages.LoadWall(0, [ref] $image)) { throw 'The wall cannot be read' }
$start = $image.Length - 4096
foreach ($i in 0..63) {
    foreach ($at in $i, (63 * 64 + $i), ($i * 64), ($i * 64 + 63)) { $image[$start + $at] = 15 }
}
$pages.SetChunkData(0, $image)
if (-not $pages.SaveVSwap($vcGood)) { throw 'The page file cannot be saved' }

# New objects read what is on the disk.
$maps = New-Object -ComObject Tessaro.clsGameMaps
$pages = New-Object -ComObject Tessaro.clsVSwap
$planes = $null; $width = 0; $height = 0
if (-not ($maps.Initialize() -and $maps.LoadMap(0, [ref] $planes, [ref] $width, [ref] $height))) { throw 'No map' }
if (-not ($pages.Initialize() -and $pages.LoadWall(0, [ref] $image))) { throw 'No wall' }
"Map 0 is $width x $height, its cell (2, 2) is $($planes[0][2 * $width + 2])"
"Wall 0 begins with the colours $($image[$start]) and $($image[$start + 1])"
